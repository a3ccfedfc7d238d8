#include "detection/strategy/TableSelectorStrategy.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/errors/errors.hpp"
#include "detection/strategy/hint_selectors.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {
constexpr const char* kSource = "strategy/TableSelectorStrategy";
}  // namespace

TableSelectorStrategy::TableSelectorStrategy(const common::vcos::DocWrapper* document,
                                             const options::DetectionOptions& options)
    : DetectionStrategy(document, options), table_selector_(options.TableSelector) {}

TableSelectorStrategy::~TableSelectorStrategy() = default;

NodeSelectorPair TableSelectorStrategy::ResolveTableSelector() const {
    const common::xpath::NodeList nodes =
        evaluate_selector_hint(SelectorHint::TableSelector, context(), table_selector_);
    // Only the first node counts: a table has one root, and the others are never searched.
    if (nodes.empty() || !nodes.is_element_node(0))
        vxErrMsgId(TOLVEN::io::xml::detection::TableSelectorInvalidSelection());
    return {nodes.get_node_at_index(0), parenthesize(table_selector_)};
}

std::optional<Table> TableSelectorStrategy::DetectTable() const {
    TOLVEN_TRACE_SCOPE(
        "virtual std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::TableSelectorStrategy::DetectTable() const",
        kSource);
    const NodeSelectorPair resolved = ResolveTableSelector();
    // An empty path makes every selector the search writes relative to the selected node.
    common::xpath::LazyXPath path(namespaces());
    std::optional<Table> table = DetectTableRecursive(resolved.node, path);
    if (!table) return table;
    // The search wrote its selectors relative to the selected node ("" when the table is that node,
    // "/a/b" when it is further down); the hint in parentheses makes them absolute. The table's own
    // selector still matters although the hint is reported: a table without row selector
    // addresses its variables from it.
    if (table->row_selector) table->row_selector = resolved.selector + *table->row_selector;
    table->table_selector = resolved.selector + table->table_selector.value_or(Selector());
    return table;
}

std::optional<Selector> TableSelectorStrategy::GetTableSelector() const { return table_selector_; }

}  // namespace tolven::io::xml::detection::strategy
