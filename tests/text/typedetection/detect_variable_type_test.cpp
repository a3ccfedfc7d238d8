#include "text/typedetection/detect_variable_type.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tolven::io::text::typedetection {
namespace {

TolvenType detect(const std::vector<std::string_view>& samples, std::size_t limit = 250) {
    return detect_variable_type(TypeAnalyzerOptions{}, samples, limit);
}

TEST(detect_variable_type, VoteOutcomes) {
    struct Case {
        const char* name;
        std::vector<std::string_view> samples;
        TolvenType expected;
    };
    const std::vector<Case> cases = {
        {"empty list", {}, TolvenType::String},
        {"all empty", {"", "  ", "\t"}, TolvenType::String},
        {"empties outnumber one number", {"", "", "", "7"}, TolvenType::Double},
        {"tie goes to the first seen", {"a", "1", "b", "2"}, TolvenType::String},
        {"tie goes to the first seen, reversed", {"1", "a", "2", "b"}, TolvenType::Double},
        {"empties then a tie", {"", "", "", "2024-01-05", "0x1F"}, TolvenType::Datetime},
        {"dates and date-times vote together", {"2024-01-05", "2024-01-05 10:20", "x", "y"}, TolvenType::Datetime},
        {"all kinds of text vote together", {"1", "2", "a|", "1:2:3:4:5", "plain"}, TolvenType::String},
        {"durations", {"12:30", "01:02:03", "x"}, TolvenType::Duration},
        {"hexadecimal and binary", {"0x1F", "0b1", "3"}, TolvenType::UInt64},
    };
    for (const Case& c : cases) EXPECT_EQ(detect(c.samples), c.expected) << c.name;
}

TEST(detect_variable_type, LimitCountsOnlyNonEmptySamples) {
    // With a limit of 2 all four samples are classified: both numbers are seen, so the empties
    // (the majority otherwise) give way to them.
    EXPECT_EQ(detect({"", "", "1", "2"}, 2), TolvenType::Double);
    // The third non-empty sample is beyond the limit and never votes.
    EXPECT_EQ(detect({"a", "1", "2", "3"}, 2), TolvenType::String);
    EXPECT_EQ(detect({"1"}, 0), TolvenType::String);
}

TEST(detect_variable_type, SamplesAreUtf8AndUseTheSettings) {
    TypeAnalyzerOptions options;
    options.date_locale = u"de_DE";
    options.decimal_separator = u',';
    options.thousands_separator = u'.';
    const std::vector<std::string_view> dates = {"5. M\xC3\xA4rz 2024", "1.234,5", "6. M\xC3\xA4rz 2024"};
    EXPECT_EQ(detect_variable_type(options, dates, 250), TolvenType::Datetime);
    // An ill-formed UTF-8 byte becomes a replacement character: text, not a failure.
    const std::vector<std::string_view> broken = {"\xFF", "\xC3"};
    EXPECT_EQ(detect_variable_type(options, broken, 250), TolvenType::String);
}

}  // namespace
}  // namespace tolven::io::text::typedetection
