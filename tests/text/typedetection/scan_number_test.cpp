#include "text/typedetection/scan_number.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tolven::io::text::typedetection {
namespace {

std::optional<std::string> normalise(const TypeAnalyzerOptions& options, std::u16string_view text) {
    std::string out;
    if (!scan_number(options, text, &out)) return std::nullopt;
    return out;
}

TEST(scan_number, WritesCNotationForTheFloatParser) {
    TypeAnalyzerOptions german;
    german.decimal_separator = u',';
    german.thousands_separator = u'.';
    TypeAnalyzerOptions trimming;
    trimming.trim_nonnumeric = true;
    struct Case {
        const TypeAnalyzerOptions& options;
        std::u16string_view text;
        std::optional<std::string> expected;
    };
    const TypeAnalyzerOptions defaults;
    const std::vector<Case> cases = {
        {defaults, u"+12", "12"},          // the parser takes no '+'
        {defaults, u"-12.5", "-12.5"},
        {defaults, u"12D4", "12e4"},       // any exponent character becomes 'e'
        {defaults, u"1e+05", "1e+05"},
        {defaults, u"-.5E-3", "-.5e-3"},
        {defaults, u"1e5e5", std::nullopt},
        {defaults, u"1.5e2.5", std::nullopt},
        {defaults, u"+-1", std::nullopt},
        {defaults, u"1-", std::nullopt},
        {defaults, u"", std::nullopt},
        {defaults, u"-", std::nullopt},
        {german, u"-1.234.567,25", "-1234567.25"},
        {german, u"1,2,3", std::nullopt},
        {trimming, u"Total: -12.50 USD", "-12.50"},
        {trimming, u"Nr.", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(normalise(c.options, c.text), c.expected) << std::string(c.text.begin(), c.text.end());
    }
}

TEST(scan_number, StripNonnumericKeepsWhatCanBeginAndEndANumber) {
    TypeAnalyzerOptions options;
    options.decimal_separator = u',';
    EXPECT_EQ(strip_nonnumeric(options, u"EUR 3,20"), u"3,20");
    EXPECT_EQ(strip_nonnumeric(options, u"-5 %"), u"-5");
    EXPECT_EQ(strip_nonnumeric(options, u"5,"), u"5,");
    EXPECT_EQ(strip_nonnumeric(options, u"abc"), u"");
}

}  // namespace
}  // namespace tolven::io::text::typedetection
