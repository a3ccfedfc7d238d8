// Cluster evaluation and the table builders: which clusters are tried, in what order, and what
// table each builder lays out.

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/clustering/cluster.hpp"
#include "detection/support/SearchProbe.hpp"
#include "detection/variables/DetectionNode.hpp"
#include "host/except/Exception.hpp"
#include "xml/log/getLogger.hpp"
#include "xml/xpath/NodeList.hpp"

namespace {

namespace log = tolven::io::xml::common::log;
using tolven::io::xml::common::xpath::NodeList;
using tolven::io::xml::detection::Table;
using tolven::testing::HintFields;
using tolven::testing::make_options;
using tolven::testing::SearchProbe;
using Strings = std::vector<std::string>;

class Evaluation : public ::testing::Test {
protected:
    void load(std::string_view xml, const HintFields& hints = {}) {
        doc_ = tolven::testing::parse_xml(xml);
        probe_ = std::make_unique<SearchProbe>(doc_.get(), make_options(hints));
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
    std::string raised_by(const std::function<void()>& call) {
        try {
            call();
        } catch (const foundation::core::except::IMsgIDException& e) {
            std::string id = e.GetID();
            for (const auto& a : e.GetBaseMsgIDObj().arguments_utf8()) id += " " + a;
            return id;
        }
        return "";
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

TEST_F(Evaluation, DumpsReplaceSummariesAtDebug) {
    load("<r><v>1</v><v>2</v></r>");
    log::LogCapture capture(log::kProgressMask | log::kDebugMask);
    evaluate_root();
    const Strings messages = capture.messages();
    EXPECT_EQ(count_starting(messages, "Evaluating cluster [[\"v\", \"v\"]] as a Row-Grouped table..."), 1u);
    EXPECT_EQ(count_starting(messages, "Starting evaluation of clusters: Clusters = \n{\n    [[\"v\", \"v\"]], \n}"), 1u);
}

TEST_F(Evaluation, RowGroupedTableHoldsBothSelectorsAndTheRowEntry) {
    load("<r><row><v>1</v></row><row><v>2</v></row></r>");
    const auto table = evaluate_root();
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->num_variables, 1u);
    EXPECT_EQ(table->table_selector, std::u16string(u"/r"));
    EXPECT_EQ(table->row_selector, std::u16string(u"/r/row"));
    EXPECT_STREQ(reinterpret_cast<const char*>(table->tree->node->name), "row");
}

TEST_F(Evaluation, NonRowGroupedRowsTakeTheIthOccurrenceOfEveryName) {
    // "c" occurs in the first two rows only; the cluster's leading name sets the row count.
    load("<r><a>1</a><b>x</b><c>p</c><a>2</a><b>y</b><c>q</c><a>3</a><b>z</b></r>");
    auto [root, path] = probe_->GetDocumentRootNode();
    const auto groups = probe_->hasRepeatingChildrenNodes(root);
    const auto table = probe_->getNonRowGroupedTable({(*groups)[0], (*groups)[1], (*groups)[2]}, path);
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->num_variables, 3u);
    EXPECT_EQ(table->table_selector, std::u16string(u"/r"));
    EXPECT_FALSE(table->row_selector.has_value());
    EXPECT_EQ(table->tree->node, nullptr);
    EXPECT_EQ(table->statistics[table->tree->children[2]->statistics_index].num_row_appearances, 2u);
}

TEST_F(Evaluation, NonRowGroupedNeedsTheStricterThreshold) {
    // x is in 2 of 3 rows (0.67): enough for rows of their own (0.5), not for side-by-side names (0.7).
    load("<r><a><x/></a><b><k/></b><a><x/></a><b/><a/><b/></r>");
    auto [root, path] = probe_->GetDocumentRootNode();
    const auto groups = probe_->hasRepeatingChildrenNodes(root);
    EXPECT_FALSE(probe_->getNonRowGroupedTable({(*groups)[0], (*groups)[1]}, path).has_value());
    EXPECT_TRUE(probe_->getRowGroupedTable((*groups)[0], path).has_value());
}

TEST_F(Evaluation, RowListMergesEveryListedNodeIntoTheFirstRowsEntry) {
    load("<r><first><v>1</v></first><x><second><v>2</v></second></x></r>");
    const NodeList rows(probe_->context(), u"//first | //second");
    const auto table = probe_->getRowListTable(u"(//first | //second)", u"/r", rows);
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->row_selector, std::u16string(u"(//first | //second)"));
    EXPECT_EQ(table->table_selector, std::u16string(u"/r"));
    EXPECT_STREQ(reinterpret_cast<const char*>(table->tree->node->name), "first");
    EXPECT_EQ(table->statistics[table->tree->children[0]->statistics_index].num_row_appearances, 2u);
    EXPECT_EQ(table->num_variables, 1u);

    const NodeList sparse(probe_->context(), u"//first | //x");
    EXPECT_FALSE(probe_->getRowListTable(u"s", std::nullopt, sparse).has_value());
}

TEST_F(Evaluation, RowListChecksNodeKindsOnlyForARowSelectorHint) {
    HintFields hints;
    hints.RowSelector = u"//@id";
    load(R"(<r><row id="1">a</row><row id="2">b</row></r>)", hints);
    const NodeList attributes(probe_->context(), u"//@id");
    EXPECT_EQ(raised_by([&] { probe_->getRowListTable(u"(//@id)", std::nullopt, attributes); }),
              "TOLVEN:io:xml:detection:RowSelectorAttributeSelected //@id");
    const NodeList texts(probe_->context(), u"//row/text()");
    EXPECT_EQ(raised_by([&] { probe_->getRowListTable(u"x", std::nullopt, texts); }),
              "TOLVEN:io:xml:detection:RowSelectorInvalidSelection");

    load(R"(<r><row id="1">a</row><row id="2">b</row></r>)");
    const NodeList unchecked(probe_->context(), u"//row | //@id");
    EXPECT_EQ(raised_by([&] { probe_->getRowListTable(u"x", std::nullopt, unchecked); }), "");
}

}  // namespace
