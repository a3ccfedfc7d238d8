// evaluateTable: when a candidate is tabular enough, and how many variables it then has.

#include <gtest/gtest.h>

#include "detection/support/SearchProbe.hpp"
#include "xml/log/getLogger.hpp"

namespace {

using tolven::io::xml::detection::VariableStatistics;
namespace log = tolven::io::xml::common::log;

VariableStatistics leaf(std::size_t rows) { return {rows, 0, rows, true, false}; }
VariableStatistics attribute(std::size_t rows, std::size_t non_empty) { return {rows, non_empty, rows, true, true}; }
VariableStatistics parent(std::size_t rows, std::size_t non_empty) { return {rows, non_empty, rows, false, false}; }

class Scoring : public ::testing::Test {
protected:
    std::size_t score(const std::vector<VariableStatistics>& stats, std::size_t rows, double threshold) const {
        return probe_.evaluateTable(stats, rows, threshold);
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_ = tolven::testing::parse_xml("<r/>");
    tolven::testing::SearchProbe probe_{doc_.get(), tolven::testing::make_options()};
};

TEST_F(Scoring, AcceptsWhenOneVariableCoversMoreThanTheThresholdAndCountsEveryVariable) {
    EXPECT_EQ(score({leaf(5)}, 10, 0.5), 0u);
    EXPECT_EQ(score({leaf(6)}, 10, 0.5), 1u);
    EXPECT_EQ(score({}, 10, 0.5), 0u);
    // The parent without text is no variable; the attribute's 9 of 10 values accept at 0.7.
    EXPECT_EQ(score({parent(10, 0), leaf(2), attribute(10, 9), leaf(1)}, 10, 0.7), 3u);
    // Non-leaves and attributes are judged by their values: present everywhere but empty
    // everywhere is counted, never accepting on its own.
    EXPECT_EQ(score({attribute(10, 0)}, 10, 0.5), 0u);
    EXPECT_EQ(score({attribute(10, 0), leaf(8)}, 10, 0.5), 2u);
    EXPECT_EQ(score({parent(10, 6)}, 10, 0.5), 1u);
    EXPECT_EQ(score({parent(10, 5)}, 10, 0.5), 0u);
}

TEST_F(Scoring, StatisticsAreDumpedOnlyAtDebug) {
    {
        log::LogCapture capture(log::kProgressMask);
        score({leaf(1)}, 2, 0.5);
        EXPECT_TRUE(capture.messages().empty());
    }
    log::LogCapture capture(log::kDebugMask);
    score({}, 4, 0.7);
    EXPECT_EQ(capture.messages(),
              std::vector<std::string>{"Evaluating detected table statistics...\nmax_num_rows = 4\n"
                                       "tabular_threshold = 0.700000\nVariableStatistics = {\n}"});
}

}  // namespace
