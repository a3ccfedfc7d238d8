#pragma once
// A strategy that runs the hint-free search and opens the search's members to tests.

#include <optional>

#include "detection/options/make_detection_options.hpp"
#include "detection/strategy/DetectionStrategy.hpp"
#include "detection/support/detect_helpers.hpp"

namespace tolven::testing {

// The options record that hints parse to.
inline io::xml::detection::options::DetectionOptions make_options(const HintFields& hints = {}) {
    const vxArrayPtr structure = make_hint_struct(hints);
    return io::xml::detection::options::make_detection_options(structure.get());
}

class SearchProbe : public io::xml::detection::strategy::DetectionStrategy {
public:
    using DetectionStrategy::DetectionStrategy;

    std::optional<io::xml::detection::Table> DetectTable() const override {
        auto [root, path] = GetDocumentRootNode();
        return DetectTableRecursive(root, path);
    }

    using DetectionStrategy::context;
    using DetectionStrategy::evaluateTable;
    using DetectionStrategy::evaulateClusters;
    using DetectionStrategy::GetDocumentRootNode;
    using DetectionStrategy::getNonRowGroupedTable;
    using DetectionStrategy::getRowGroupedTable;
    using DetectionStrategy::getRowListTable;
    using DetectionStrategy::hasRepeatingChildrenNodes;
    using DetectionStrategy::MakeImportOptions;
};

}  // namespace tolven::testing
