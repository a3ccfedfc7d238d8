// tables() and Hints::table: the candidates of a document, and detect and read pointed at one.
#include <gtest/gtest.h>

#include <tolven/xml.hpp>

#include "api/support/collect.hpp"
#include "support/files.hpp"

namespace {

namespace tx = tolven::xml;
using tolven::testing::example;
using tolven::testing::read_outcome;

TEST(PublicTables, ListsTheCandidatesAndTableNPicksOneForDetectAndRead) {
    const auto log = tx::Source::file(example("sensor-log.xml"));
    const auto candidates = tx::tables(log);
    ASSERT_EQ(candidates.size(), 2u);
    const tx::TableCandidate& first = candidates[0];
    EXPECT_EQ(first.rank, 1u);
    EXPECT_EQ(first.row_selector, "/logfile/records/record");
    EXPECT_EQ(first.rows, 12u);
    EXPECT_EQ(first.variable_names, (std::vector<std::string>{"time", "ch1", "ch2", "ch3"}));
    EXPECT_EQ(first.columns, 4u);
    EXPECT_EQ(first.hint, (std::vector<std::string>{"--row-selector", "/logfile/records/record"}));
    EXPECT_FALSE(first.builtin || first.weak);
    EXPECT_TRUE(candidates[1].builtin && candidates[1].hint.empty());
    EXPECT_EQ(candidates[1].row_selector, tx::detect(log).row_selector);

    for (const auto& c : candidates) {
        tx::Hints pick;
        pick.table = c.rank;
        const tx::Detection d = tx::detect(log, pick);
        EXPECT_EQ(d.row_selector, c.row_selector);
        EXPECT_EQ(d.variables.size(), c.columns);
        EXPECT_EQ(read_outcome(log, pick).table.rows.size(), c.rows);
    }

    tx::Hints beyond, combined;
    beyond.table = 3;
    combined.table = 1;
    combined.row_node_name = "record";
    EXPECT_EQ(read_outcome(log, beyond).error, "error TOLVEN:import:NoSuchTable 3 2 " + example("sensor-log.xml"));
    EXPECT_EQ(read_outcome(log, combined).error, "error TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
    EXPECT_TRUE(tx::tables(tx::Source::memory("<a/>")).empty());
}

}  // namespace
