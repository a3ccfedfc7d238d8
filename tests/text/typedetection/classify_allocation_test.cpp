// Classifying runs once per sample; the common kinds of value must not touch the heap. A counting
// global operator new checks it.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "text/typeconversion/write_number.hpp"
#include "text/typedetection/classify.hpp"

namespace {
std::atomic<long> allocations{0};
}  // namespace

void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
// These replacements pair malloc with free by construction; GCC cannot see that through the
// replaced operator new and warns.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
#pragma GCC diagnostic pop

namespace tolven::io::text::typedetection {
namespace {

TEST(classify, CommonValuesDoNotAllocate) {
    TypeAnalyzerOptions options;
    options.thousands_separator = u',';
    options.date_locale = u"de_DE";
    const std::u16string_view values[] = {u"12,345.678", u"-1e5", u"Bahnhofstraße", u"0x1F",
                                          u"12:30:15", u"2024-01-05T10:20:30Z", u"5. März 2024", u""};
    for (const auto value : values) classify(options, value);  // loads the locale's data once

    long before = allocations.load();
    const std::u16string probe(100, u'x');  // proves the counter sees allocations at all
    ASSERT_GT(allocations.load(), before);

    before = allocations.load();
    for (const auto value : values) classify(options, value);
    EXPECT_EQ(allocations.load() - before, 0);
}

// The importer writes every number through write_number: once its buffers have grown, never the heap.
TEST(write_number, CommonValuesDoNotAllocate) {
    TypeAnalyzerOptions options;
    options.thousands_separator = u'\u00A0';  // beyond ASCII: the UTF-16 path
    std::string out;
    const std::string_view values[] = {"12\u00A0345.678", "-1e5", "02110", "123456789012345678901234", "NaN", "x"};
    for (const auto value : values) typeconversion::write_number(options, value, out);
    const long before = allocations.load();
    for (const auto value : values) typeconversion::write_number(options, value, out);
    options.thousands_separator = u',';
    for (const auto value : values) typeconversion::write_number(options, value, out);
    EXPECT_EQ(allocations.load() - before, 0);
}

}  // namespace
}  // namespace tolven::io::text::typedetection
