#include "detection/strategy/DefaultStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

DefaultStrategy::DefaultStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options)
    : DetectionStrategy(document, options) {}

DefaultStrategy::~DefaultStrategy() = default;

std::optional<Table> DefaultStrategy::DetectTable() const {
    // The root element itself is never a row: the search looks at its children first.
    auto [root, path] = GetDocumentRootNode();
    return DetectTableRecursive(root, path);
}

}  // namespace tolven::io::xml::detection::strategy
