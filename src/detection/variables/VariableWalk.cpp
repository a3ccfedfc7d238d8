#include "detection/variables/VariableWalk.hpp"

#include <stdexcept>
#include <utility>

#include "detection/variables/node_helpers.hpp"
#include "detection/variables/variable_type.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::io::xml::detection::variables {

VariableWalk::VariableWalk(const std::vector<VariableStatistics>& statistics,
                           const common::xpath::NamespaceMap& namespaces,
                           const text::typedetection::TypeAnalyzerOptions& settings, std::size_t num_variables)
    : statistics_(statistics), namespaces_(namespaces), settings_(settings) {
    columns_.names.resize(num_variables);
    columns_.types.resize(num_variables);
    columns_.selectors.resize(num_variables);
}

std::size_t VariableWalk::walk(const DetectionNode& entry, std::size_t index, const std::u16string& selector) {
    std::size_t stored = 0;
    // The entry's own text, when it has any, is a variable addressed by the entry's selector.
    if (entry.node != nullptr && statistics_.at(entry.statistics_index).is_variable())
        store(index + stored++, entry, selector);

    for (const TrackedName& attribute : entry.attributes)
        store(index + stored++, attribute, make_child_selector(attribute.node, selector, namespaces_));
    for (const auto& child : entry.children)
        if (statistics_.at(child->statistics_index).is_leaf)
            store(index + stored++, *child, make_child_selector(child->node, selector, namespaces_));

    for (const auto& child : entry.children)
        if (!statistics_.at(child->statistics_index).is_leaf)
            stored += walk(*child, index + stored, make_child_selector(child->node, selector, namespaces_));
    return stored;
}

VariableColumns VariableWalk::take(std::size_t stored) {
    if (stored != columns_.names.size())
        throw std::logic_error("the detection tree holds fewer variables than the table counted");
    return std::move(columns_);
}

void VariableWalk::store(std::size_t index, const TrackedName& entry, std::u16string selector) {
    if (index >= columns_.names.size())
        throw std::logic_error("the detection tree holds more variables than the table counted");
    std::u16string name = common::xpath::written_name(entry.node);
    if (entry.node->type == XML_ATTRIBUTE_NODE) name.insert(name.begin(), u'@');
    columns_.names[index] = std::move(name);
    columns_.selectors[index] = std::move(selector);
    columns_.types[index] = detect_type_name(settings_, entry.samples);
}

}  // namespace tolven::io::xml::detection::variables
