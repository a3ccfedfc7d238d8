#pragma once
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The RowNodeName hint: no search. The first element of that name gives a path without positions,
// and every element along that path is a row.
class RowNodeNameStrategy : public DetectionStrategy {
public:
    // Finds the row element and writes both selectors; a name no element carries raises
    // "TOLVEN:io:xml:common:NodeNameNotFound", a path that cannot be written
    // "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint", both before detection starts.
    RowNodeNameStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~RowNodeNameStrategy() override;

    std::optional<Table> DetectTable() const override;
    // Both always reported, table or not.
    std::optional<Selector> GetTableSelector() const override;
    std::optional<Selector> GetRowSelector() const override;

private:
    NodeSelectorPair DetectRowSelector() const;
    // The row's parent and the row selector cut before its last step; the row itself when it is
    // the root element.
    NodeSelectorPair DeriveTable() const;

    NodeSelectorPair row_;
    NodeSelectorPair table_;
};

}  // namespace tolven::io::xml::detection::strategy
