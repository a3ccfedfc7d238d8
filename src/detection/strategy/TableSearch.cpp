// The hint-free search: depth first from a node, the first level whose repeated child names make
// a table wins.

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/diagnostics/printers.hpp"
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

constexpr const char* kSource = "strategy/DetectionStrategy";

std::string print_unique_node_name_map(const common::xpath::UniqueNodeNameMap<NodeSet>& map) {
    std::string out = "UniqueNodeNameMap = \n{\n";
    for (const NodeSet& nodes : map)
        out.append(diagnostics::kIndent)
            .append("[")
            .append(diagnostics::print_node_name(nodes.front()))
            .append(", ")
            .append(std::to_string(nodes.size()))
            .append("], \n");
    return out + "}\n";
}

}  // namespace

std::optional<common::xpath::UniqueNodeNameMap<NodeSet>> DetectionStrategy::hasRepeatingChildrenNodes(
    const xmlNode* node) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::common::xpath::UniqueNodeNameMap<std::vector<const _xmlNode*> > > "
        "tolven::io::xml::detection::strategy::DetectionStrategy::hasRepeatingChildrenNodes(const xmlNode*) const",
        kSource);
    common::xpath::UniqueNodeNameMap<NodeSet> groups;
    std::size_t elements = 0;
    if (node != nullptr)
        for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
            if (child->type != XML_ELEMENT_NODE) continue;
            groups[groups.find_or_insert(child).first].push_back(child);
            ++elements;
        }
    if (diagnostics::debug_enabled()) diagnostics::debug(print_unique_node_name_map(groups));
    if (groups.size() < elements) return groups;
    return std::nullopt;
}

std::optional<Table> DetectionStrategy::DetectTableRecursiveImpl(const xmlNode* node,
                                                                 common::xpath::LazyXPath& xpath) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::DetectionStrategy::DetectTableRecursiveImpl(const xmlNode*, "
        "tolven::io::xml::common::xpath::LazyXPath&) const",
        kSource);
    if (node == nullptr) return std::nullopt;

    // This level first: a table among the children wins over anything deeper.
    if (auto groups = hasRepeatingChildrenNodes(node)) {
        diagnostics::progress(
            "Current DOM level has repeated node names. Clustering repeated node names based on frequency "
            "similarity.");
        const clustering::Clusters clusters = clustering::cluster(*groups);
        groups.reset();  // the clusters hold their own copies; release the grouping before evaluating
        if (auto table = evaulateClusters(clusters, xpath)) return table;
    }

    // Positions count like-named element siblings only.
    common::xpath::UniqueNodeNameMap<std::size_t> positions;
    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        const std::size_t position = ++positions[positions.find_or_insert(child).first];
        xpath.push_back(child, position);
        diagnostics::progress("Failed to detect table at current DOM level. Recursing downward...");
        std::optional<Table> table = DetectTableRecursiveImpl(child, xpath);
        xpath.pop_back();
        if (table) return table;
    }
    return std::nullopt;
}

}  // namespace tolven::io::xml::detection::strategy
