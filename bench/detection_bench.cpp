// Hint-free detection of a generated catalog, set against the libxml2 parse of the same document.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "catalog_document.hpp"
#include "detection/TableDetector.hpp"
#include "host/String.hpp"
#include "xml/vcos/load_document.hpp"

namespace {

namespace hs = Harnvale::String;
using tolven::io::xml::common::vcos::DocWrapper;

constexpr std::size_t kSmallRows = 1'000;
constexpr std::size_t kLargeRows = 400'000;
constexpr std::size_t kCatalogVariables = 7;

const std::string& catalog(std::size_t rows) {
    static std::map<std::size_t, std::string> documents;
    auto it = documents.find(rows);
    if (it == documents.end()) it = documents.emplace(rows, tolven::bench::make_catalog(rows)).first;
    return it->second;
}

std::shared_ptr<DocWrapper> parsed_catalog(std::size_t rows) {
    static std::map<std::size_t, std::shared_ptr<DocWrapper>> documents;
    auto& doc = documents[rows];
    if (!doc) doc = tolven::io::xml::common::vcos::load_document_from_memory(catalog(rows), "catalog.xml");
    return doc;
}

// The hint structure with no hint given.
vxArrayPtr no_hints() {
    vxArrayPtr hints = do_create_struct();
    auto set = [&](const char* name, vxArrayPtr value) {
        vxAddField(hints.get(), name);
        vxSetField(hints.get(), 0, name, value.release());
    };
    auto text = [](std::u16string_view t) { return hs::make_String(hs::createStringArray(t)); };
    auto logical = [](bool b) {
        vxArrayPtr a = do_create_numeric(vxClassID::Logical, 1, 1);
        vxGetLogicals(a.get())[0] = b;
        return a;
    };
    for (const char* name : {"TableNodeName", "RowNodeName", "TableSelector", "RowSelector", "AttributeSuffix",
                             "ThousandsSeparator"})
        set(name, text(u""));
    set("VariableNodeNames", hs::make_String(hs::createStringArray(std::vector<std::u16string>{})));
    set("VariableSelectors", hs::make_String(hs::createStringArray(std::vector<std::u16string>{})));
    set("DateLocale", text(u"en_US"));
    set("ImportAttributes", logical(true));
    set("DetectNamespaces", logical(true));
    set("RegisteredNamespaces", hs::make_String(hs::createStringArray(0, 2)));
    set("DecimalSeparator", text(u"."));
    set("ExponentCharacter", text(u"eEdD"));
    set("TrimNonnumeric", logical(false));
    return hints;
}

void parse(benchmark::State& state, std::size_t rows) {
    const std::string& xml = catalog(rows);
    for (auto _ : state) {
        auto doc = tolven::io::xml::common::vcos::load_document_from_memory(xml, "catalog.xml");
        if (!doc) std::abort();
        benchmark::DoNotOptimize(doc.get());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * rows));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * xml.size()));
}

void detect(benchmark::State& state, std::size_t rows) {
    const auto doc = parsed_catalog(rows);
    const vxArrayPtr object = do_create_object(doc);
    const vxArrayPtr hints = no_hints();
    const vxArray* inputs[2] = {object.get(), hints.get()};
    for (auto _ : state) {
        vxArrayPtr outputs[1];
        tolven::io::xml::detection::detect(1, outputs, 2, inputs);
        // The benchmark is only meaningful while the table is still found whole.
        const bool* detected = vxGetLogicals(vxGetField(outputs[0].get(), 0, "TableDetected"));
        const hs::StringPtr names = hs::getString(vxGetField(outputs[0].get(), 0, "VariableNames"));
        if (detected == nullptr || !detected[0] || !names || names->numel() != kCatalogVariables) std::abort();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * rows));
}

void BM_Parse_Small(benchmark::State& state) { parse(state, kSmallRows); }
void BM_Detect_Small(benchmark::State& state) { detect(state, kSmallRows); }
void BM_Parse_400k(benchmark::State& state) { parse(state, kLargeRows); }
void BM_Detect_400k(benchmark::State& state) { detect(state, kLargeRows); }

BENCHMARK(BM_Parse_Small)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Detect_Small)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Parse_400k)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Detect_400k)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
