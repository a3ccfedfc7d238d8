#include "detection/strategy/RowSelectorStrategy.hpp"

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/errors/errors.hpp"
#include "detection/strategy/hint_selectors.hpp"

namespace tolven::io::xml::detection::strategy {

RowSelectorStrategy::RowSelectorStrategy(const common::vcos::DocWrapper* document,
                                         const options::DetectionOptions& options)
    : DetectionStrategy(document, options), row_selector_(options.RowSelector) {}

RowSelectorStrategy::~RowSelectorStrategy() = default;

std::optional<Table> RowSelectorStrategy::DetectTable() const {
    TOLVEN_TRACE_SCOPE(
        "virtual std::optional<tolven::io::xml::detection::Table> "
        "tolven::io::xml::detection::strategy::RowSelectorStrategy::DetectTable() const",
        "strategy/RowSelectorStrategy");
    const common::xpath::NodeList rows = evaluate_selector_hint(SelectorHint::RowSelector, context(), row_selector_);
    if (rows.empty()) vxErrMsgId(TOLVEN::io::xml::detection::RowSelectorInvalidSelection());
    // The variable selectors are appended to the row selector: the parentheses keep a union or a
    // predicate of the hint whole. No table selector: the rows may have several parents.
    return getRowListTable(parenthesize(row_selector_), std::nullopt, rows);
}

std::optional<Selector> RowSelectorStrategy::GetRowSelector() const { return row_selector_; }

}  // namespace tolven::io::xml::detection::strategy
