#include "detection/strategy/VariableNodeNamesStrategy.hpp"

#include <optional>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/diagnostics/printers.hpp"
#include "detection/errors/errors.hpp"
#include "detection/strategy/hint_selectors.hpp"
#include "detection/variables/node_helpers.hpp"
#include "host/utf.hpp"
#include "xml/search/search.hpp"
#include "xml/tree/Tree.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::io::xml::detection::strategy {

namespace {

namespace ids = TOLVEN::io::xml::detection;
constexpr const char* kSource = "strategy/VariableNodeNamesStrategy";
using common::xpath::XPathIndexStyle;

}  // namespace

VariableNodeNamesStrategy::VariableNodeNamesStrategy(const common::vcos::DocWrapper* document,
                                                     const options::DetectionOptions& options)
    : VariableSelectorsStrategy(document, options) {
    variable_selectors_ = DetectVariableSelectors();
}

VariableNodeNamesStrategy::~VariableNodeNamesStrategy() = default;

std::vector<Selector> VariableNodeNamesStrategy::DetectVariableSelectors() const {
    TOLVEN_TRACE_SCOPE(
        "std::vector<std::u16string> "
        "tolven::io::xml::detection::strategy::VariableNodeNamesStrategy::DetectVariableSelectors() const",
        kSource);
    const std::vector<std::u16string>& names = options().VariableNodeNames;
    if (diagnostics::progress_enabled())
        diagnostics::progress("Detecting VariableSelectors from VariableNodeNames " + diagnostics::print_list(names) +
                              "...");
    std::vector<Selector> selectors;
    selectors.reserve(names.size());
    for (const std::u16string& name : names) {
        selectors.push_back(DetectVariableSelector(name));
        if (diagnostics::progress_enabled())
            diagnostics::progress(fl::i18n::ustring_to_utf8(name) + " -> " +
                                  fl::i18n::ustring_to_utf8(selectors.back()));
    }
    return selectors;
}

Selector VariableNodeNamesStrategy::DetectVariableSelector(const std::u16string& name) const {
    TOLVEN_TRACE_SCOPE(
        "std::u16string tolven::io::xml::detection::strategy::VariableNodeNamesStrategy::DetectVariableSelector("
        "const std::u16string&) const",
        kSource);
    // Compared in the document's own encoding, so the walk allocates nothing per node.
    const std::string wanted = fl::i18n::ustring_to_utf8(name);
    const bool import_attributes = options().ImportAttributes;
    auto written = [&](const common::xpath::LazyXPath& path) {
        return materialize_for_hint(path, XPathIndexStyle::NoIndex, u"VariableSelectors", u"VariableNodeNames", name);
    };

    std::optional<Selector> selector;
    bool attribute_matched = false;
    bool declaration_matched = false;
    const common::tree::Tree tree(document(), namespaces());
    for (auto it = tree.begin(); it != tree.end(); ++it) {
        const xmlNode* element = *it;
        if (common::search::has_written_name(element, wanted)) {
            selector = written(it.xpath());
            break;
        }
        if (!attribute_matched) {
            for (const xmlAttr* attr = element->properties; attr != nullptr; attr = attr->next) {
                const auto* as_node = reinterpret_cast<const xmlNode*>(attr);
                if (!common::search::has_written_name(as_node, wanted)) continue;
                Selector candidate = written(it.xpath()) + u"/@" + variables::make_name_step(as_node, namespaces());
                // Without attributes, an element of the name further on may still match.
                if (import_attributes) selector = std::move(candidate);
                attribute_matched = true;
                break;
            }
            if (selector) break;
        }
        if (!declaration_matched) {
            for (const xmlNs* ns = element->nsDef; ns != nullptr && !declaration_matched; ns = ns->next)
                declaration_matched = common::xpath::makeWYSIWYGNodeName(ns) == name;
        }
    }

    if (!import_attributes && attribute_matched && !selector)
        vxErrMsgId(ids::VariableNodeNamesImportAttributesFalse(name));
    if (selector) return *std::move(selector);
    if (!declaration_matched) vxErrMsgId(ids::VariableNodeNamesNonexistentNode(name, document_source()));
    vxErrMsgId(ids::VariableNodeNamesMatchesNamespaceDeclaration(name));
}

}  // namespace tolven::io::xml::detection::strategy
