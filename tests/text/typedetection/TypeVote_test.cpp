#include "text/typedetection/TypeVote.hpp"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "text/typedetection/detect_variable_type.hpp"

namespace tolven::io::text::typedetection {
namespace {

// The vote taken one sample at a time ends where the vote over the kept samples does.
TEST(TypeVote, AgreesWithTheVoteOverKeptSamples) {
    const std::vector<std::vector<std::string_view>> lists = {
        {},
        {"", " ", "\t"},
        {"", "", "", "7"},
        {"a", "1", "b", "2"},
        {"1", "a", "2", "b"},
        {"", "", "", "2024-01-05", "0x1F"},
        {"2024-01-05", "2024-01-05 10:20", "x", "y"},
        {"12:30", "01:02:03", "x"},
        {"0x1F", "0b1", "3"},
    };
    const TypeAnalyzerOptions options;
    textio::MutableField scratch;
    for (const auto& samples : lists) {
        TypeVote vote;
        for (const auto s : samples) vote.add(options, s, scratch);
        EXPECT_EQ(vote.result(), detect_variable_type(options, samples, 250)) << samples.size() << " samples";
    }
}

}  // namespace
}  // namespace tolven::io::text::typedetection
