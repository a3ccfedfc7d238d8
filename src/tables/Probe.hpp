#pragma once
// The builtin's own search pieces, opened up for the host: a strategy that never searches by itself
// but lets the candidate finder group children, cluster them, lay out and score candidate tables
// exactly as the builtin does, and write selectors with the same registered prefixes.

#include <optional>

#include "detection/strategy/DetectionStrategy.hpp"

namespace tolven::tables {

namespace detection = io::xml::detection;

class Probe final : public detection::strategy::DetectionStrategy {
public:
    // options must hold no detection hint (only the import settings).
    Probe(const io::xml::common::vcos::DocWrapper* document, const detection::options::DetectionOptions& options);

    std::optional<detection::Table> DetectTable() const override { return std::nullopt; }

    using DetectionStrategy::analyzer_options;
    using DetectionStrategy::context;
    using DetectionStrategy::evaluateTable;
    using DetectionStrategy::getNonRowGroupedTable;
    using DetectionStrategy::getRowGroupedTable;
    using DetectionStrategy::hasRepeatingChildrenNodes;
    using DetectionStrategy::namespaces;
    using DetectionStrategy::options;
};

}  // namespace tolven::tables
