#include "xml/xpath/LazyXPath.hpp"

#include <cstring>

#include "xml/errors.hpp"
#include "xml/string/to_ustring.hpp"
#include "xml/xpath/names.hpp"

namespace tolven::io::xml::common::xpath {

namespace {

const xmlChar* uri_of(const xmlNode* node) { return node->ns ? node->ns->href : nullptr; }

bool same_text(const xmlChar* a, const xmlChar* b) {
    if (a == b) return true;  // names usually come from the document's dictionary
    if (a == nullptr || b == nullptr) return false;
    return std::strcmp(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b)) == 0;
}

bool like_named(const xmlNode* a, const xmlNode* b) {
    return b->type == XML_ELEMENT_NODE && same_text(a->name, b->name) && same_text(uri_of(a), uri_of(b));
}

// True when another element child of the same parent has the same namespace URI and local name.
bool has_like_named_sibling(const xmlNode* node, unsigned long position) {
    if (position > 1) return true;  // an earlier sibling of the name exists
    for (const xmlNode* s = node->next; s != nullptr; s = s->next)
        if (like_named(node, s)) return true;
    for (const xmlNode* s = node->prev; s != nullptr; s = s->prev)
        if (like_named(node, s)) return true;
    return false;
}

void append_position(std::u16string& text, unsigned long position) {
    text.push_back(u'[');
    for (char digit : std::to_string(position)) text.push_back(static_cast<char16_t>(digit));
    text.push_back(u']');
}

}  // namespace

std::u16string LazyXPath::materialize(XPathIndexStyle style) const {
    std::u16string text;
    bool writable = true;
    for (const auto& [node, position] : steps_) {
        text.push_back(u'/');
        if (const xmlChar* uri = uri_of(node); uri != nullptr && *uri != '\0') {
            const std::string prefix = lookup_namespace_prefix(*namespaces_, reinterpret_cast<const char*>(uri));
            // Without a prefix the step would select an element of no namespace: not this one.
            if (prefix.empty()) writable = false;
            text += add_colon(string::to_ustring(prefix));
        }
        const std::u16string name = string::to_ustring(node->name);
        text += has_colon(name) ? make_local_name_selector(name) : name;

        const bool indexed = style == XPathIndexStyle::IndexAll ||
                             (style == XPathIndexStyle::IndexRepeated && has_like_named_sibling(node, position));
        if (indexed) append_position(text, position);
    }
    if (!writable) throw error::XMLInvalidXPathExpression(text);
    return text;
}

}  // namespace tolven::io::xml::common::xpath
