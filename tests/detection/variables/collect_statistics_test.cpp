#include "detection/variables/collect_statistics.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "detection/support/detect_helpers.hpp"

namespace {

using tolven::io::xml::detection::DetectionNode;
using tolven::io::xml::detection::TrackedName;
using tolven::io::xml::detection::VariableStatistics;
using tolven::io::xml::detection::variables::StatisticsCollector;

// Merges every element child of the root as one row each (row-grouped), like the table builders.
class Statistics : public ::testing::Test {
protected:
    void collect(std::string_view xml, bool import_attributes = true) {
        doc_ = tolven::testing::parse_xml(xml);
        StatisticsCollector collector(stats_, import_attributes);
        std::size_t row = 0;
        for (const xmlNode* c = xmlDocGetRootElement(doc_->doc().get())->children; c; c = c->next)
            if (c->type == XML_ELEMENT_NODE) collector.collect_into(tree_, c, ++row);
    }
    // The entry of a child of the row entry, by position of first appearance.
    const DetectionNode& child(std::size_t i) const { return *tree_.children[i]; }
    const VariableStatistics& stats_of(const TrackedName& entry) const { return stats_[entry.statistics_index]; }

    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
    DetectionNode tree_;
    std::vector<VariableStatistics> stats_;
};

TEST_F(Statistics, RepeatsInARowCountOnceAsRowAndEachAsAppearance) {
    collect("<t><row><a>1</a><a>2</a><a>3</a></row><row><a>4</a></row><row/></t>");
    const VariableStatistics& a = stats_of(child(0));
    EXPECT_EQ(a.total_appearences, 4u);
    EXPECT_EQ(a.num_row_appearances, 2u);
    EXPECT_EQ(a.num_non_empty_samples, 2u);
    // The first text of a row is its sample; the repeats are ignored.
    EXPECT_EQ(child(0).samples, (std::vector<std::string_view>{"1", "4"}));
    EXPECT_TRUE(a.is_leaf);
    // The row entry itself: three rows, never a leaf once it had children.
    EXPECT_EQ(stats_of(tree_).num_row_appearances, 3u);
    EXPECT_FALSE(stats_of(tree_).is_leaf);
}

TEST_F(Statistics, BlankTextIsNoSampleButSamplesAreKeptUntrimmed) {
    collect("<t><row><a> \n\t\r </a><b> x </b></row><row><a/><b><![CDATA[y]]></b></row></t>");
    EXPECT_EQ(stats_of(child(0)).num_non_empty_samples, 0u);
    EXPECT_TRUE(child(0).samples.empty());
    EXPECT_TRUE(stats_of(child(0)).is_variable());  // still a leaf
    EXPECT_EQ(child(1).samples, (std::vector<std::string_view>{" x ", "y"}));
}

TEST_F(Statistics, SamplesStopAt250ButAreCountedOn) {
    std::string xml = "<t>";
    for (int i = 0; i < 300; ++i) xml += "<row><v>" + std::to_string(i) + "</v></row>";
    collect(xml + "</t>");
    EXPECT_EQ(stats_of(child(0)).num_non_empty_samples, 300u);
    ASSERT_EQ(child(0).samples.size(), 250u);
    EXPECT_EQ(child(0).samples.back(), "249");
}

TEST_F(Statistics, ANameSeenWithChildrenOnceIsNeverALeafAgain) {
    collect("<t><row><a>1</a></row><row><a><b>2</b></a></row><row><a>3</a></row></t>");
    const VariableStatistics& a = stats_of(child(0));
    EXPECT_FALSE(a.is_leaf);
    // Its own text still makes it a variable.
    EXPECT_EQ(a.num_non_empty_samples, 2u);
    EXPECT_TRUE(a.is_variable());
    ASSERT_EQ(child(0).children.size(), 1u);
    EXPECT_EQ(stats_of(*child(0).children[0]).num_row_appearances, 1u);
}

TEST_F(Statistics, NamesAreKeptApartByNamespaceUri) {
    collect(R"(<t xmlns:p="urn:p" xmlns:q="urn:q" xmlns:p2="urn:p">
        <row><p:a>1</p:a><q:a>2</q:a><a>3</a><p2:a>4</p2:a></row></t>)");
    ASSERT_EQ(tree_.children.size(), 3u);
    EXPECT_EQ(stats_of(child(0)).total_appearences, 2u);  // p:a and p2:a share a URI
    EXPECT_EQ(stats_of(child(1)).total_appearences, 1u);
    EXPECT_EQ(stats_of(child(2)).total_appearences, 1u);
    EXPECT_EQ(stats_.size(), 4u);  // the row and three names
}

TEST_F(Statistics, AttributesAreCountedAndSampledLikeLeaves) {
    collect(R"(<t><row id="1" note=" "/><row id="2"/><row/></t>)");
    ASSERT_EQ(tree_.attributes.size(), 2u);
    const TrackedName& id = tree_.attributes[0];
    EXPECT_TRUE(stats_of(id).is_attribute);
    EXPECT_TRUE(stats_of(id).is_leaf);
    EXPECT_EQ(stats_of(id).num_row_appearances, 2u);
    EXPECT_EQ(id.samples, (std::vector<std::string_view>{"1", "2"}));
    EXPECT_EQ(stats_of(tree_.attributes[1]).num_non_empty_samples, 0u);
    EXPECT_EQ(id.node->type, XML_ATTRIBUTE_NODE);
    // Rows carrying attributes are not leaves.
    EXPECT_FALSE(stats_of(tree_).is_leaf);
}

TEST_F(Statistics, AttributesLeftOutStillStopAnElementBeingALeaf) {
    collect(R"(<t><row><a k="1">x</a></row><row><a>y</a></row></t>)", false);
    EXPECT_TRUE(child(0).attributes.empty());
    EXPECT_FALSE(stats_of(child(0)).is_leaf);
    EXPECT_EQ(stats_.size(), 2u);
}

}  // namespace
