#pragma once
// Groups the repeated child names of one element into bands of similar frequency.

#include <libxml/tree.h>

#include <cstdint>
#include <string>
#include <vector>

#include "xml/xpath/UniqueNodeNameMap.hpp"

namespace tolven::io::xml::detection::clustering {

// The node groups of the names in one band, most frequent first.
using Cluster = std::vector<std::vector<const xmlNode*>>;
using Clusters = std::vector<Cluster>;

// Sorts the name groups by frequency (largest first, ties in order of first appearance) and cuts
// the list wherever a name falls outside the band of the current cluster's largest frequency.
// An empty input yields one empty cluster.
Clusters cluster(const common::xpath::UniqueNodeNameMap<std::vector<const xmlNode*>>& groups);

// The clusters dump: "Clusters = \n{\n" one indented node list per cluster followed by ", \n", then "}".
std::string print_clusters(const Clusters& clusters);

// The band admitted around cluster_max: names at most this much less frequent join the cluster.
double inclusion_scaling_factor(std::uint64_t cluster_max);

// One cluster with every node: "[" its groups as node lists "]". For debug dumps only.
std::string print_cluster(const Cluster& cluster);
// One cluster in a size that does not grow with the rows: "[" each group as ["name" x count] "]".
std::string summarize_cluster(const Cluster& cluster);
// The clusters dump layout with every cluster summarized.
std::string summarize_clusters(const Clusters& clusters);

}  // namespace tolven::io::xml::detection::clustering
