#pragma once
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The RowSelector hint: no search; the table is made of the selected rows, which must all be elements.
class RowSelectorStrategy : public DetectionStrategy {
public:
    RowSelectorStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~RowSelectorStrategy() override;

    // Raises the RowSelector identifiers for a hint that does not evaluate, selects nothing, or
    // selects anything but elements.
    std::optional<Table> DetectTable() const override;
    // The hint as given, table or not.
    std::optional<Selector> GetRowSelector() const override;

private:
    Selector row_selector_;
};

}  // namespace tolven::io::xml::detection::strategy
