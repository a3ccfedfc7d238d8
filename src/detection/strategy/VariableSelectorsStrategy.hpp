#pragma once
#include <string>
#include <vector>

#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The VariableSelectors hint: one variable per selector, no table search. Each selector's nodes
// give the variable's values, its type and its name.
class VariableSelectorsStrategy : public DetectionStrategy {
public:
    VariableSelectorsStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~VariableSelectorsStrategy() override;

    // The result straight from the selectors: TableDetected true, no table or row selector.
    // Selectors are evaluated in order; the first failing one ends the call with its identifier.
    ImportOptions Detect() const override;
    // Never searched: always no table.
    std::optional<Table> DetectTable() const override;

protected:
    // One variable of the result.
    struct Variable {
        Selector selector;
        std::u16string name;
        std::u16string type;
    };

    // The variable selector stands for: its values typed, its name from its first node.
    Variable EvaluateVariableSelector(const Selector& selector) const;

    // Copied from the hint; the node-name strategy replaces them with the selectors it writes.
    std::vector<Selector> variable_selectors_;
};

}  // namespace tolven::io::xml::detection::strategy
