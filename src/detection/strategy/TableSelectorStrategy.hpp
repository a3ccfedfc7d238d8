#pragma once
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The TableSelector hint: the hint-free search started at the first selected node, which must be
// an element; the selectors of the table found are rewritten to start with the hint.
class TableSelectorStrategy : public DetectionStrategy {
public:
    TableSelectorStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~TableSelectorStrategy() override;

    // Raises the TableSelector identifiers for a hint that does not evaluate, selects nothing, or
    // whose first node is not an element.
    std::optional<Table> DetectTable() const override;
    // The hint as given.
    std::optional<Selector> GetTableSelector() const override;

private:
    // The first selected element and the hint in parentheses.
    NodeSelectorPair ResolveTableSelector() const;

    Selector table_selector_;
};

}  // namespace tolven::io::xml::detection::strategy
