#pragma once
#include <string>
#include <vector>

#include "detection/strategy/VariableSelectorsStrategy.hpp"

namespace tolven::io::xml::detection::strategy {

// The VariableNodeNames hint: each name becomes the selector of the first element or attribute
// written with that name; from then on the variable selectors strategy.
class VariableNodeNamesStrategy : public VariableSelectorsStrategy {
public:
    // Writes one selector per name, in order; the first name that fails ends construction with
    // its identifier, before detection starts.
    VariableNodeNamesStrategy(const common::vcos::DocWrapper* document, const options::DetectionOptions& options);
    ~VariableNodeNamesStrategy() override;

private:
    std::vector<Selector> DetectVariableSelectors() const;
    // The selector for one name: the first match in document order, where an element's own name
    // comes before its attributes. Raises VariableNodeNamesImportAttributesFalse,
    // VariableNodeNamesNonexistentNode or VariableNodeNamesMatchesNamespaceDeclaration.
    Selector DetectVariableSelector(const std::u16string& name) const;
};

}  // namespace tolven::io::xml::detection::strategy
