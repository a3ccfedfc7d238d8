#include "detection/variables/node_helpers.hpp"

#include <string_view>

#include "host/except/Exception.hpp"
#include "xml/errors.hpp"
#include "xml/string/to_ustring.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::io::xml::detection::variables {

namespace {

const xmlNs* namespace_of(const xmlNode* node) {
    // Read through the right type: an attribute arrives cast to xmlNode.
    return node->type == XML_ATTRIBUTE_NODE ? reinterpret_cast<const xmlAttr*>(node)->ns : node->ns;
}

}  // namespace

std::u16string make_name_step(const xmlNode* node, const common::xpath::NamespaceMap& namespaces) {
    if (node == nullptr) return {};
    if (node->type != XML_ELEMENT_NODE && node->type != XML_ATTRIBUTE_NODE)
        vxErrMsgId(TOLVEN::io::xml::common::Internal("Invalid node type"));

    const xmlNs* ns = namespace_of(node);
    const std::string_view uri =
        ns != nullptr && ns->href != nullptr ? reinterpret_cast<const char*>(ns->href) : std::string_view();
    const std::u16string prefix = common::string::to_ustring(common::xpath::lookup_namespace_prefix(namespaces, uri));

    std::u16string name = common::string::to_ustring(node->name);
    // A name holding ':' cannot be written as a plain step.
    if (common::xpath::has_colon(name)) name = common::xpath::make_local_name_selector(name);
    return common::xpath::add_colon(prefix) + name;
}

std::u16string make_child_selector(const xmlNode* node, const std::u16string& parent_selector,
                                   const common::xpath::NamespaceMap& namespaces) {
    std::u16string selector = parent_selector;
    selector += u'/';
    if (node != nullptr && node->type == XML_ATTRIBUTE_NODE) selector += u'@';
    selector += make_name_step(node, namespaces);
    return selector;
}

}  // namespace tolven::io::xml::detection::variables
