// Cluster evaluation: which clusters are tried, in what order, and how strictly each layout is judged.

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/clustering/cluster.hpp"
#include "detection/support/SearchProbe.hpp"
#include "xml/log/getLogger.hpp"

namespace {

namespace log = tolven::io::xml::common::log;
using tolven::io::xml::detection::Table;
using tolven::testing::make_options;
using tolven::testing::SearchProbe;
using Strings = std::vector<std::string>;

class Evaluation : public ::testing::Test {
protected:
    void load(std::string_view xml) {
        doc_ = tolven::testing::parse_xml(xml);
        probe_ = std::make_unique<SearchProbe>(doc_.get(), make_options());
    }
    // The clusters of the root's children, evaluated with the root's path.
    std::optional<Table> evaluate_root() {
        auto [root, path] = probe_->GetDocumentRootNode();
        const auto groups = probe_->hasRepeatingChildrenNodes(root);
        return probe_->evaulateClusters(tolven::io::xml::detection::clustering::cluster(groups.value()), path);
    }
    Strings progress_of_root() {
        log::LogCapture capture(log::kProgressMask);
        evaluate_root();
        return capture.messages();
    }
    static std::size_t count_starting(const Strings& messages, std::string_view prefix) {
        return std::count_if(messages.begin(), messages.end(), [&](const std::string& m) { return m.rfind(prefix, 0) == 0; });
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
    std::unique_ptr<SearchProbe> probe_;
};

TEST_F(Evaluation, FirstAcceptedClusterWinsAndLaterOnesAreNotTried) {
    load("<r><title>t</title><row><v>1</v></row><row><v>2</v></row><row><v>3</v></row></r>");
    const Strings messages = progress_of_root();
    EXPECT_EQ(count_starting(messages, "Starting evaluation of clusters: Clusters = \n{\n    [[\"row\" x 3]], "
                                       "\n    [[\"title\" x 1]], \n}"),
              1u);
    EXPECT_EQ(count_starting(messages, "Evaluating "), 1u);
    EXPECT_EQ(messages.back(), "Detected Row-Grouped table from cluster [[\"row\" x 3]]");
}

TEST_F(Evaluation, SmallClustersAreSkippedSilently) {
    // One name occurring once, and two names whose leading one occurs only twice.
    load("<r><a>1</a><b>1</b><b>2</b><c>1</c><c>2</c></r>");
    Strings messages = progress_of_root();
    EXPECT_EQ(count_starting(messages, "Evaluating "), 0u);
    EXPECT_EQ(count_starting(messages, "Failed to detect a table from clusters: "), 1u);

    load("<r><b>1</b><c>1</c><b>2</b><c>2</c><b>3</b><c>3</c></r>");
    messages = progress_of_root();
    EXPECT_EQ(count_starting(messages, "Evaluating Cluster [[\"b\" x 3], [\"c\" x 3]] as a Non-Row-Grouped table..."),
              1u);
    EXPECT_EQ(count_starting(messages, "Detected Non-Row-Grouped table from cluster "), 1u);
}

TEST_F(Evaluation, FailedCandidatesAreLoggedAndTheNextClusterIsTried) {
    // "row" (6 rows) carries nothing that covers half of them; "pair" x 2, a cluster of its own,
    // then makes the table.
    load("<r><row/><row/><row/><row/><row/><row><x/></row><pair>1</pair><pair>2</pair></r>");
    log::LogCapture capture(log::kProgressMask);
    const auto table = evaluate_root();
    const Strings messages = capture.messages();
    EXPECT_EQ(count_starting(messages, "Failed evaluation of Cluster [[\"row\" x 6]] as Row-Grouped table."), 1u);
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->row_selector, std::u16string(u"/r/pair"));
}

TEST_F(Evaluation, NonRowGroupedNeedsTheStricterThreshold) {
    // x is in 2 of 3 rows (0.67): enough for rows of their own (0.5), not for side-by-side names (0.7).
    load("<r><a><x/></a><b><k/></b><a><x/></a><b/><a/><b/></r>");
    auto [root, path] = probe_->GetDocumentRootNode();
    const auto groups = probe_->hasRepeatingChildrenNodes(root);
    EXPECT_FALSE(probe_->getNonRowGroupedTable({(*groups)[0], (*groups)[1]}, path).has_value());
    EXPECT_TRUE(probe_->getRowGroupedTable((*groups)[0], path).has_value());
}

}  // namespace
