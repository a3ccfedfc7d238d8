#pragma once
#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The TableNodeName hint: the hint-free search started at the named element, whose path is
// reported as the table selector whatever the search finds.
class TableNodeNameStrategy : public DetectionStrategy {
public:
    // Finds the named element; a name no element carries raises
    // "TOLVEN:io:xml:common:NodeNameNotFound" here, before detection starts.
    TableNodeNameStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~TableNodeNameStrategy() override;

    std::optional<Table> DetectTable() const override;
    // The named element's path; "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint"
    // when it cannot be written as XPath.
    std::optional<Selector> GetTableSelector() const override;

private:
    NodeLazyXPathPair DetectTableSelector() const;

    NodeLazyXPathPair table_node_;
};

}  // namespace tolven::io::xml::detection::strategy
