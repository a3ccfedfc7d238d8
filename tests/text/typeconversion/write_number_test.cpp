#include "text/typeconversion/write_number.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolven::io::text::typeconversion {
namespace {

using typedetection::TypeAnalyzerOptions;

TEST(write_number, IntegersFromTheirDigitsFractionsShortest) {
    const TypeAnalyzerOptions plain;
    TypeAnalyzerOptions grouped;
    grouped.thousands_separator = u',';
    TypeAnalyzerOptions spaced;  // a separator beyond ASCII takes the UTF-16 path
    spaced.thousands_separator = u'\u00A0';
    spaced.decimal_separator = u',';
    TypeAnalyzerOptions trimming;
    trimming.trim_nonnumeric = true;
    using S = NumberStatus;
    struct Case {
        const TypeAnalyzerOptions& options;
        std::string text;
        S status;
        std::string out;
    };
    const std::vector<Case> cases = {
        {plain, "1000000", S::Written, "1000000"},
        {plain, "18446744073709551615", S::Written, "18446744073709551615"},
        {plain, "-123456789012345678901234567890", S::Written, "-123456789012345678901234567890"},
        {plain, "+42.000", S::Written, "42"},
        {plain, "1e6", S::Written, "1000000"},
        {plain, "1.5E+20", S::Written, "150000000000000000000"},
        {plain, "2.50", S::Written, "2.5"},
        {plain, "0.1", S::Written, "0.1"},
        {plain, "0.00012", S::Written, "0.00012"},
        {plain, "1.5e-7", S::Written, "1.5e-07"},
        {plain, "0", S::Written, "0"},
        {plain, "-0.5", S::Written, "-0.5"},
        {plain, ".5", S::Written, "0.5"},
        {plain, "02110", S::LeadingZeros, "2110"},
        {plain, "-007.5", S::LeadingZeros, "-7.5"},
        {plain, "NaN", S::Special, "NaN"},
        {plain, "-inf", S::Special, "-Inf"},
        {plain, "1e400", S::NotANumber, ""},
        {plain, "X40000", S::NotANumber, ""},
        {plain, "1,5", S::NotANumber, ""},
        {grouped, "1,000,000.00", S::Written, "1000000"},
        {spaced, "1\u00A0234,5", S::Written, "1234.5"},
        {trimming, "$12.50", S::Written, "12.5"},
    };
    std::string out;
    for (const Case& c : cases) {
        out.clear();
        EXPECT_EQ(write_number(c.options, c.text, out), c.status) << c.text;
        EXPECT_EQ(out, c.out) << c.text;
    }
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
