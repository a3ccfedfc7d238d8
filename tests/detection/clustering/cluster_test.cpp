#include "detection/clustering/cluster.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "detection/support/detect_helpers.hpp"
#include "xml/log/getLogger.hpp"

namespace {

namespace clustering = tolven::io::xml::detection::clustering;
namespace log = tolven::io::xml::common::log;
using tolven::io::xml::common::xpath::UniqueNodeNameMap;
using Groups = UniqueNodeNameMap<std::vector<const xmlNode*>>;
using Shape = std::vector<std::vector<std::string>>;  // per cluster, "name x count" per group

// Children of the root named n0, n1, ... with the given frequencies, grouped by name in order of
// first appearance (as the search groups them).
class Clustering : public ::testing::Test {
protected:
    Groups groups_with(const std::vector<std::size_t>& frequencies) {
        std::string xml = "<r>";
        for (std::size_t i = 0; i < frequencies.size(); ++i)
            for (std::size_t k = 0; k < frequencies[i]; ++k) xml += "<n" + std::to_string(i) + "/>";
        doc_ = tolven::testing::parse_xml(xml + "</r>");
        Groups groups;
        for (const xmlNode* c = xmlDocGetRootElement(doc_->doc().get())->children; c; c = c->next)
            groups[groups.find_or_insert(c).first].push_back(c);
        return groups;
    }
    Shape shape_of(const std::vector<std::size_t>& frequencies) {
        Shape shape;
        for (const auto& c : clustering::cluster(groups_with(frequencies))) {
            auto& s = shape.emplace_back();
            for (const auto& g : c)
                s.push_back(std::string(reinterpret_cast<const char*>(g.front()->name)) + " x " +
                            std::to_string(g.size()));
        }
        return shape;
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
};

TEST_F(Clustering, LaterNamesAreComparedWithTheFirstNameOfTheNewestCluster) {
    EXPECT_EQ(shape_of({4, 2, 1}), (Shape{{"n0 x 4", "n1 x 2"}, {"n2 x 1"}}));
    // 5 opens a band of 3..5; 2 starts a new cluster whose band (1..2) then takes 1.
    EXPECT_EQ(shape_of({5, 2, 1}), (Shape{{"n0 x 5"}, {"n1 x 2", "n2 x 1"}}));
}

TEST_F(Clustering, BandAdmitsFrequenciesDownToItsLowerEdgeAndNoFurther) {
    // cluster_max, and the lowest frequency that still joins its cluster.
    const std::vector<std::pair<std::size_t, std::size_t>> bands{
        {2, 1}, {3, 2}, {5, 3}, {10, 7}, {50, 43}, {51, 46}, {100, 90}, {101, 101},
    };
    for (const auto& [max, lowest] : bands) {
        SCOPED_TRACE("cluster_max = " + std::to_string(max));
        const std::string top = "n0 x " + std::to_string(max);
        if (lowest < max) {
            EXPECT_EQ(shape_of({max, lowest}), (Shape{{top, "n1 x " + std::to_string(lowest)}}));
        }
        if (lowest > 1) {
            EXPECT_EQ(shape_of({max, lowest - 1}), (Shape{{top}, {"n1 x " + std::to_string(lowest - 1)}}));
        }
    }
}

TEST_F(Clustering, SortsByFrequencyAndKeepsFirstAppearanceOnTies) {
    EXPECT_EQ(shape_of({1, 3, 1, 3}), (Shape{{"n1 x 3", "n3 x 3"}, {"n0 x 1", "n2 x 1"}}));
}

TEST_F(Clustering, StepsAndResultAreDumpedOnlyAtDebug) {
    {
        log::LogCapture capture(log::kProgressMask);
        clustering::cluster(groups_with({3, 3}));
        EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Starting clustering...", "Ending clustering..."}));
    }
    log::LogCapture capture(log::kProgressMask | log::kDebugMask);
    clustering::cluster(groups_with({3, 1}));
    const auto messages = capture.messages();
    ASSERT_EQ(messages.size(), 5u);
    EXPECT_EQ(messages[1],
              "\n=== CLUSTERING STEP ===\nnode_name = \"n0\"\nnode_frequency = 3\n"
              "Automatically adding first node to cluster #0\ncluster = #0\n");
    EXPECT_EQ(messages[2],
              "\n=== CLUSTERING STEP ===\nnode_name = \"n1\"\nnode_frequency = 1\ncluster_max = 3\n"
              "cluster_inclusion_scaling_factor = 1.723369\ncluster_inclusion_freq_diff = 2.000000\ncluster = #1\n");
    EXPECT_EQ(messages[4], "Clusters = \n{\n    [[\"n0\", \"n0\", \"n0\"]], \n    [[\"n1\"]], \n}");
}

}  // namespace
