#include "xml/xpath/names.hpp"

#include "xml/string/to_ustring.hpp"

namespace tolven::io::xml::common::xpath {

std::string lookup_namespace_prefix(const NamespaceMap& namespaces, std::string_view uri) {
    if (uri.empty()) return {};
    const auto it = namespaces.find(std::string(uri));
    return it == namespaces.end() ? std::string() : it->second;
}

bool has_colon(std::u16string_view name) { return name.find(u':') != std::u16string_view::npos; }

std::u16string add_colon(std::u16string_view prefix) {
    if (prefix.empty()) return {};
    std::u16string result(prefix);
    result.push_back(u':');
    return result;
}

std::u16string make_local_name_selector(std::u16string_view name) {
    std::u16string selector = u"*[local-name()='";
    selector.append(name);
    selector.append(u"']");
    return selector;
}

std::u16string makeWYSIWYGNodeName(const xmlNs* ns) {
    if (ns == nullptr || ns->prefix == nullptr) return u"xmlns";
    return u"xmlns:" + string::to_ustring(ns->prefix);
}

std::u16string written_name(const xmlNode* node) {
    if (node == nullptr) return {};
    // xmlAttr and xmlNode share their leading fields, but reading through the right type is clearer.
    const xmlNs* ns = node->type == XML_ATTRIBUTE_NODE ? reinterpret_cast<const xmlAttr*>(node)->ns : node->ns;
    std::u16string name;
    if (ns != nullptr && ns->prefix != nullptr) name = add_colon(string::to_ustring(ns->prefix));
    name += string::to_ustring(node->name);
    return name;
}

}  // namespace tolven::io::xml::common::xpath
