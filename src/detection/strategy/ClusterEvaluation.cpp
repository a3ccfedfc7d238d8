// Trying clusters of repeated names as tables, and laying out each candidate: the rows merged into
// one detection tree, its statistics scored, its selectors written.

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/errors/errors.hpp"
#include "detection/strategy/DetectionStrategy.hpp"
#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/collect_statistics.hpp"
#include "detection/variables/node_helpers.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

constexpr const char* kSource = "strategy/DetectionStrategy";
constexpr double kRowGroupedThreshold = 0.5;
// Without a row element of their own, side-by-side names must agree more closely to be a table.
constexpr double kNonRowGroupedThreshold = 0.7;
constexpr std::size_t kMinRowGroupedRows = 2;
constexpr std::size_t kMinNonRowGroupedRows = 3;

// Every node at -vv and beyond; a size-independent summary otherwise, so that a progress log of a
// large table stays short.
std::string describe(const clustering::Cluster& cluster) {
    return diagnostics::debug_enabled() ? clustering::print_cluster(cluster) : clustering::summarize_cluster(cluster);
}
std::string describe(const clustering::Clusters& clusters) {
    return diagnostics::debug_enabled() ? clustering::print_clusters(clusters)
                                        : clustering::summarize_clusters(clusters);
}

// The path of the rows' parent, or "" for an empty path.
Selector make_table_selector(const common::xpath::LazyXPath& xpath) {
    if (xpath.empty()) return {};
    try {
        return xpath.materialize(common::xpath::XPathIndexStyle::IndexRepeated);
    } catch (const common::error::XMLInvalidXPathExpression& e) {
        const std::u16string rejected = e.strings().empty() ? std::u16string() : e.strings().front();
        vxErrMsgId(TOLVEN::io::xml::detection::DetectedUnsupportedSelector(u"TableSelector", rejected));
    }
}

}  // namespace

std::optional<Table> DetectionStrategy::evaulateClusters(const clustering::Clusters& clusters,
                                                         const common::xpath::LazyXPath& xpath) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::DetectionStrategy::evaulateClusters(const "
        "std::vector<std::vector<std::vector<const _xmlNode*> > >&, const "
        "tolven::io::xml::common::xpath::LazyXPath&) const",
        kSource);
    const bool progress = diagnostics::progress_enabled();
    if (progress) diagnostics::progress("Starting evaluation of clusters: " + describe(clusters));

    for (const clustering::Cluster& cluster : clusters) {
        if (cluster.size() == 1) {
            if (cluster.front().size() < kMinRowGroupedRows) continue;
            const std::string text = progress ? describe(cluster) : std::string();
            if (progress) diagnostics::progress("Evaluating cluster " + text + " as a Row-Grouped table...");
            if (auto table = getRowGroupedTable(cluster.front(), xpath)) {
                if (progress) diagnostics::progress("Detected Row-Grouped table from cluster " + text);
                return table;
            }
            if (progress) diagnostics::progress("Failed evaluation of Cluster " + text + " as Row-Grouped table.");
        } else if (cluster.size() > 1) {
            if (cluster.front().size() < kMinNonRowGroupedRows) continue;
            const std::string text = progress ? describe(cluster) : std::string();
            if (progress) diagnostics::progress("Evaluating Cluster " + text + " as a Non-Row-Grouped table...");
            if (auto table = getNonRowGroupedTable(cluster, xpath)) {
                if (progress) diagnostics::progress("Detected Non-Row-Grouped table from cluster " + text);
                return table;
            }
            if (progress)
                diagnostics::progress("Failed evaluation of Cluster " + text + " as Non-Row-Grouped table.");
        }
    }

    if (progress) diagnostics::progress("Failed to detect a table from clusters: " + describe(clusters));
    return std::nullopt;
}

std::optional<Table> DetectionStrategy::getRowGroupedTable(const NodeSet& rows,
                                                           const common::xpath::LazyXPath& xpath) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::DetectionStrategy::getRowGroupedTable(const "
        "std::vector<const _xmlNode*>&, const tolven::io::xml::common::xpath::LazyXPath&) const",
        kSource);
    if (rows.empty()) return std::nullopt;

    Table table;
    table.tree = std::make_unique<DetectionNode>();
    variables::StatisticsCollector collector(table.statistics, options().ImportAttributes);
    // The rows share one name, so they merge into one entry; rows are numbered from 1.
    for (std::size_t i = 0; i < rows.size(); ++i) collector.collect_into(*table.tree, rows[i], i + 1);

    table.num_variables = evaluateTable(table.statistics, rows.size(), kRowGroupedThreshold);
    if (table.num_variables == 0) return std::nullopt;

    table.table_selector = make_table_selector(xpath);
    table.row_selector = variables::make_child_selector(rows.front(), *table.table_selector, namespaces());
    return table;
}

std::optional<Table> DetectionStrategy::getNonRowGroupedTable(const clustering::Cluster& cluster,
                                                              const common::xpath::LazyXPath& xpath) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::DetectionStrategy::getNonRowGroupedTable(const "
        "std::vector<std::vector<const _xmlNode*> >&, const tolven::io::xml::common::xpath::LazyXPath&) const",
        kSource);
    if (cluster.empty()) return std::nullopt;

    Table table;
    table.tree = std::make_unique<DetectionNode>();  // no row element: the entry above the rows has no node
    variables::StatisticsCollector collector(table.statistics, options().ImportAttributes);
    // Row i is the i-th occurrence of every name; rarer names fill the first rows only.
    const std::size_t num_rows = cluster.front().size();
    for (std::size_t i = 0; i < num_rows; ++i)
        for (const NodeSet& group : cluster)
            if (i < group.size()) collector.collect_row_statistics(group[i], *table.tree, i + 1);

    table.num_variables = evaluateTable(table.statistics, num_rows, kNonRowGroupedThreshold);
    if (table.num_variables == 0) return std::nullopt;

    // No row selector: the variables are addressed from the table, one column per name.
    table.table_selector = make_table_selector(xpath);
    return table;
}

std::optional<Table> DetectionStrategy::getRowListTable(const Selector& row_selector,
                                                        std::optional<Selector> table_selector,
                                                        const common::xpath::NodeList& rows) const {
    TOLVEN_TRACE_SCOPE(
        "std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::DetectionStrategy::getRowListTable(const std::u16string&, "
        "std::optional<std::u16string>, const tolven::io::xml::common::xpath::NodeList&) const",
        kSource);
    // Rows named by a node name are elements by construction; only a row selector needs checking.
    const bool check_kinds = !options().RowSelector.empty();

    Table table;
    table.tree = std::make_unique<DetectionNode>();
    variables::StatisticsCollector collector(table.statistics, options().ImportAttributes);
    // Every row joins one entry, named after the first row even when later rows are named otherwise.
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const xmlNode* row = rows.get_node_at_index(i);
        if (row == nullptr || row->type != XML_ELEMENT_NODE) {
            if (!check_kinds) continue;
            if (row != nullptr && row->type == XML_ATTRIBUTE_NODE)
                vxErrMsgId(TOLVEN::io::xml::detection::RowSelectorAttributeSelected(options().RowSelector));
            vxErrMsgId(TOLVEN::io::xml::detection::RowSelectorInvalidSelection());
        }
        collector.collect_into(*table.tree, row, i + 1);
    }
    if (table.tree->node == nullptr) return std::nullopt;

    table.num_variables = evaluateTable(table.statistics, rows.size(), kRowGroupedThreshold);
    if (table.num_variables == 0) return std::nullopt;

    table.row_selector = row_selector;
    table.table_selector = std::move(table_selector);
    return table;
}

}  // namespace tolven::io::xml::detection::strategy
