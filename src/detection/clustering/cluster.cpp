#include "detection/clustering/cluster.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/diagnostics/printers.hpp"

namespace tolven::io::xml::detection::clustering {

namespace {

using NodeSet = std::vector<const xmlNode*>;

struct WorkItem {
    NodeSet nodes;
    std::size_t first_appearance;  // breaks ties between names of equal frequency
};

std::string format_double(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%f", value);
    return buffer;
}

std::string step_heading(const NodeSet& nodes) {
    std::string text = "\n=== CLUSTERING STEP ===\n";
    text.append("node_name = ").append(diagnostics::print_node_name(nodes.front())).append("\n");
    text.append("node_frequency = ").append(std::to_string(nodes.size())).append("\n");
    return text;
}

}  // namespace

double inclusion_scaling_factor(std::uint64_t cluster_max) {
    // The quotient is truncated on purpose: the band narrows in steps and, above 100, admits only
    // names exactly as frequent as the cluster's first.
    const std::uint64_t q = 100 / cluster_max;
    return static_cast<double>(cluster_max) * 0.1 * std::sqrt(static_cast<double>(q));
}

Clusters cluster(const common::xpath::UniqueNodeNameMap<std::vector<const xmlNode*>>& groups) {
    TOLVEN_TRACE_SCOPE(
        "tolven::io::xml::detection::clustering::Clusters tolven::io::xml::detection::clustering::cluster("
        "const tolven::io::xml::common::xpath::UniqueNodeNameMap<std::vector<const _xmlNode*> >&)",
        "clustering/cluster");
    diagnostics::progress("Starting clustering...");
    const bool debug = diagnostics::debug_enabled();

    std::vector<WorkItem> work;
    work.reserve(groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) work.push_back({groups[i], i});
    std::sort(work.begin(), work.end(), [](const WorkItem& a, const WorkItem& b) {
        if (a.nodes.size() != b.nodes.size()) return a.nodes.size() > b.nodes.size();
        return a.first_appearance < b.first_appearance;
    });

    Clusters result(1);
    for (WorkItem& item : work) {
        Cluster& current = result.back();
        if (current.empty()) {
            if (debug)
                diagnostics::debug(step_heading(item.nodes) + "Automatically adding first node to cluster #0\n" +
                                   "cluster = #0\n");
            current.push_back(std::move(item.nodes));
            continue;
        }
        // Only the newest cluster is compared against, and only through its first (largest) name.
        const std::uint64_t cluster_max = current.front().size();
        const std::uint64_t node_frequency = item.nodes.size();
        const double scaling = inclusion_scaling_factor(cluster_max);
        const double freq_diff = static_cast<double>(cluster_max - node_frequency);
        std::string heading = debug ? step_heading(item.nodes) : std::string();
        if (scaling >= freq_diff) {
            current.push_back(std::move(item.nodes));
        } else {
            result.emplace_back().push_back(std::move(item.nodes));
        }
        if (debug)
            diagnostics::debug(heading + "cluster_max = " + std::to_string(cluster_max) + "\n" +
                               "cluster_inclusion_scaling_factor = " + format_double(scaling) + "\n" +
                               "cluster_inclusion_freq_diff = " + format_double(freq_diff) + "\n" +
                               "cluster = #" + std::to_string(result.size() - 1) + "\n");
    }

    diagnostics::progress("Ending clustering...");
    if (debug) diagnostics::debug(print_clusters(result));
    return result;
}

std::string print_cluster(const Cluster& cluster) {
    std::string out = "[";
    for (std::size_t i = 0; i < cluster.size(); ++i) {
        if (i > 0) out += ", ";
        out += diagnostics::print_node_list(cluster[i]);
    }
    return out + "]";
}

std::string summarize_cluster(const Cluster& cluster) {
    std::string out = "[";
    for (std::size_t i = 0; i < cluster.size(); ++i) {
        if (i > 0) out += ", ";
        out += "[";
        if (!cluster[i].empty()) out += diagnostics::print_node_name(cluster[i].front());
        out += " x " + std::to_string(cluster[i].size()) + "]";
    }
    return out + "]";
}

namespace {

template <class Print>
std::string print_each(const Clusters& clusters, Print print) {
    std::string out = "Clusters = \n{\n";
    for (const Cluster& c : clusters) out.append(diagnostics::kIndent).append(print(c)).append(", \n");
    return out + "}";
}

}  // namespace

std::string print_clusters(const Clusters& clusters) { return print_each(clusters, print_cluster); }

std::string summarize_clusters(const Clusters& clusters) { return print_each(clusters, summarize_cluster); }

}  // namespace tolven::io::xml::detection::clustering
