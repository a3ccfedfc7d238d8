#pragma once
// Naming, selecting and typing the variables of a detected table, from its detection tree.

#include <cstddef>
#include <string>
#include <vector>

#include "detection/variables/DetectionNode.hpp"
#include "detection/variables/VariableStatistics.hpp"
#include "text/TypeAnalyzerOptions.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::detection::variables {

// The three variable fields of the result; slot i of each describes the same variable.
struct VariableColumns {
    std::vector<std::u16string> names;
    std::vector<std::u16string> types;
    std::vector<std::u16string> selectors;
};

// Visits the variables of a tree in result order: an entry's own values, then its attributes and
// simple child elements, then its other children, depth first. The variables are the records that
// scoring counted, so their number is known before the walk.
class VariableWalk {
public:
    VariableWalk(const std::vector<VariableStatistics>& statistics, const common::xpath::NamespaceMap& namespaces,
                 const text::typedetection::TypeAnalyzerOptions& settings, std::size_t num_variables);

    // Stores the variables of entry (addressed by selector) from slot index on and returns how many
    // it stored. Throws std::logic_error when the tree holds more variables than were counted.
    std::size_t walk(const DetectionNode& entry, std::size_t index, const std::u16string& selector);

    // The filled columns; the walk must have stored every counted variable (std::logic_error otherwise).
    VariableColumns take(std::size_t stored);

private:
    void store(std::size_t index, const TrackedName& entry, std::u16string selector);

    const std::vector<VariableStatistics>& statistics_;
    const common::xpath::NamespaceMap& namespaces_;
    const text::typedetection::TypeAnalyzerOptions& settings_;
    VariableColumns columns_;
};

}  // namespace tolven::io::xml::detection::variables
