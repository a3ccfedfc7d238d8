#include "detection/strategy/VariableSelectorsStrategy.hpp"

#include <string_view>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/errors/errors.hpp"
#include "detection/strategy/ImportOptionsStruct.hpp"
#include "detection/strategy/hint_selectors.hpp"
#include "detection/variables/variable_type.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

namespace ids = TOLVEN::io::xml::detection;
constexpr const char* kSource = "strategy/VariableSelectorsStrategy";

bool is_element_or_attribute(const xmlNode* node) {
    return node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
}

bool is_blank(std::string_view text) { return text.find_first_not_of(" \t\n\r") == std::string_view::npos; }

// The node's non-blank text and CDATA children, as views into the document.
void collect_values(const xmlNode* node, std::vector<std::string_view>& values) {
    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type != XML_TEXT_NODE && child->type != XML_CDATA_SECTION_NODE) continue;
        if (child->content == nullptr) continue;
        const std::string_view text(reinterpret_cast<const char*>(child->content));
        if (!is_blank(text)) values.push_back(text);
    }
}

// The order in which this strategy adds the result's fields.
const std::vector<const char*>& field_order() {
    static const std::vector<const char*> order{"RegisteredNamespaces", "RowSelector", "VariableSelectors",
                                                "VariableTypes",        "VariableNames", "TableDetected",
                                                "TableSelector"};
    return order;
}

}  // namespace

VariableSelectorsStrategy::VariableSelectorsStrategy(const common::vcos::DocWrapper* document,
                                                     const options::DetectionOptions& options)
    : DetectionStrategy(document, options), variable_selectors_(options.VariableSelectors) {}

VariableSelectorsStrategy::~VariableSelectorsStrategy() = default;

std::optional<Table> VariableSelectorsStrategy::DetectTable() const { return std::nullopt; }

VariableSelectorsStrategy::Variable VariableSelectorsStrategy::EvaluateVariableSelector(
    const Selector& selector) const {
    const common::xpath::NodeList nodes = evaluate_selector_hint(SelectorHint::VariableSelectors, context(), selector);
    if (nodes.empty()) vxErrMsgId(ids::VariableSelectorsInvalidSelection());

    std::vector<std::string_view> values;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const xmlNode* node = nodes.get_node_at_index(i);
        if (!is_element_or_attribute(node)) vxErrMsgId(ids::VariableSelectorsNotElementOrAttribute(selector));
        // Every node is checked, but values are only taken until the vote has enough of them.
        if (values.size() < variables::kTypeSampleLimit) collect_values(node, values);
    }

    // The name comes from the first node, as written; "@" marks an attribute.
    const xmlNode* first = nodes.get_node_at_index(0);
    std::u16string name = common::xpath::written_name(first);
    if (first->type == XML_ATTRIBUTE_NODE) name.insert(name.begin(), u'@');

    return {selector, std::move(name), variables::detect_type_name(analyzer_options(), values)};
}

ImportOptions VariableSelectorsStrategy::Detect() const {
    TOLVEN_TRACE_SCOPE(
        "virtual tolven::io::xml::detection::ImportOptions "
        "tolven::io::xml::detection::strategy::VariableSelectorsStrategy::Detect() const",
        kSource);
    diagnostics::progress("Starting detection...");

    ImportOptionsFields fields;
    // The caller's selectors define the variables: there is a table, wherever its rows are.
    fields.table_detected = true;
    fields.registered_namespaces = namespace_registration().registered;
    for (const Selector& selector : variable_selectors_) {
        Variable variable = EvaluateVariableSelector(selector);
        fields.variable_selectors.push_back(std::move(variable.selector));
        fields.variable_names.push_back(std::move(variable.name));
        fields.variable_types.push_back(std::move(variable.type));
    }
    return make_import_options_struct(fields, field_order());
}

}  // namespace tolven::io::xml::detection::strategy
