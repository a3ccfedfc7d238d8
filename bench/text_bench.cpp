// Value classification and conversion on columns of 250 samples, the number detection votes over
// per variable.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "text/typeconversion/convert.hpp"
#include "text/typedetection/detect_variable_type.hpp"

namespace {

using tolven::io::text::TolvenType;
using tolven::io::text::typedetection::detect_variable_type;
using tolven::io::text::typedetection::TypeAnalyzerOptions;

constexpr std::size_t column_size = 250;

struct Column {
    std::vector<std::string> values;
    std::vector<std::string_view> views;
};

template <typename Make>
Column make_column(Make make) {
    Column column;
    for (std::size_t i = 0; i < column_size; ++i) column.values.push_back(make(i));
    for (const std::string& value : column.values) column.views.push_back(value);
    return column;
}

// Every kind of value in turn, numbers most common as in real tables.
std::string mixed_value(std::size_t i) {
    const std::string n = std::to_string(i);
    switch (i % 10) {
        case 0: return n;
        case 1: return "-" + n + ".25";
        case 2: return n + "e3";
        case 3: return "1,2" + n + ".5";
        case 4: return "item " + n;
        case 5: return "2024-01-" + std::to_string(i % 28 + 1);
        case 6: return "12:" + std::to_string(i % 60);
        case 7: return "0x" + n;
        case 8: return "";
        default: return "Mar " + std::to_string(i % 28 + 1) + ", 2024 10:20";
    }
}

std::string word_value(std::size_t i) {
    static const char* const words[] = {"apple", "banana", "cherry", "delta", "echo", "foxtrot", "golf",
                                        "hotel", "india", "juliet", "kilo", "lima"};
    return words[i % std::size(words)];
}

void run_detection(benchmark::State& state, const TypeAnalyzerOptions& options, const Column& column,
                   TolvenType expected) {
    for (auto _ : state) {
        const TolvenType type = detect_variable_type(options, column.views, column_size);
        if (type != expected) {
            state.SkipWithError("wrong type");
            break;
        }
        benchmark::DoNotOptimize(type);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * column_size));
}

void BM_DetectMixedColumn_Small(benchmark::State& state) {
    static const Column column = make_column(mixed_value);
    TypeAnalyzerOptions options;
    options.thousands_separator = u',';
    run_detection(state, options, column, TolvenType::Double);
}
BENCHMARK(BM_DetectMixedColumn_Small);

void BM_DetectWordColumn_Small(benchmark::State& state) {
    static const Column column = make_column(word_value);
    run_detection(state, TypeAnalyzerOptions{}, column, TolvenType::String);
}
BENCHMARK(BM_DetectWordColumn_Small);

void BM_DetectGermanDateColumn_Small(benchmark::State& state) {
    static const Column column = make_column([](std::size_t i) {
        return std::to_string(i % 28 + 1) + ". M\xC3\xA4rz 2024 10:" + std::to_string(10 + i % 50);
    });
    TypeAnalyzerOptions options;
    options.date_locale = u"de_DE";
    run_detection(state, options, column, TolvenType::Datetime);
}
BENCHMARK(BM_DetectGermanDateColumn_Small);

void BM_ToDoubleColumn_Small(benchmark::State& state) {
    static const Column column = make_column([](std::size_t i) { return std::to_string(i * 7919) + ".125"; });
    const TypeAnalyzerOptions options;
    for (auto _ : state) {
        double sum = 0;
        for (const std::string_view value : column.views) {
            const auto number = tolven::io::text::typeconversion::to_double(options, value);
            if (!number) std::abort();
            sum += *number;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * column_size));
}
BENCHMARK(BM_ToDoubleColumn_Small);

}  // namespace

BENCHMARK_MAIN();
