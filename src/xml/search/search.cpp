#include "xml/search/search.hpp"

#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"

namespace tolven::io::xml::common::search {

namespace {

std::string_view view(const xmlChar* text) {
    return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

const xmlNs* namespace_of(const xmlNode* node) {
    return node->type == XML_ATTRIBUTE_NODE ? reinterpret_cast<const xmlAttr*>(node)->ns : node->ns;
}

// The URI the map writes with prefix, if any.
const std::string* uri_registered_for(const xpath::NamespaceMap& namespaces, std::string_view prefix) {
    for (const auto& [uri, written] : namespaces)
        if (written == prefix) return &uri;
    return nullptr;
}

}  // namespace

bool has_written_name(const xmlNode* node, std::string_view name) noexcept {
    const xmlNs* ns = namespace_of(node);
    if (ns != nullptr && ns->prefix != nullptr) {
        const std::string_view prefix = view(ns->prefix);
        if (name.size() <= prefix.size() || name[prefix.size()] != ':' || name.substr(0, prefix.size()) != prefix)
            return false;
        name.remove_prefix(prefix.size() + 1);
    }
    return name == view(node->name);
}

SearchResult searchForRootNodeByName(const tree::Tree& tree, const std::u16string& name) {
    const std::string text = fl::i18n::ustring_to_utf8(name);
    const std::size_t colon = text.find(':');
    const std::string_view whole(text);
    // A plain bool and view rather than an optional: GCC's -O3 flow analysis misreads the latter.
    const bool prefixed = colon != std::string::npos;
    const std::string_view local = prefixed ? whole.substr(colon + 1) : whole;
    const std::string_view prefix = prefixed ? whole.substr(0, colon) : std::string_view();
    // A prefix the user registered (or that was detected) may stand for a URI the document writes
    // with another prefix, or as its default namespace.
    const std::string* registered_uri = prefixed ? uri_registered_for(tree.namespaces(), prefix) : nullptr;

    for (auto it = tree.begin(); it != tree.end(); ++it) {
        const xmlNode* element = *it;
        if (view(element->name) != local) continue;
        if (prefixed) {
            const xmlNs* ns = element->ns;
            const bool written_with_prefix = ns != nullptr && ns->prefix != nullptr && view(ns->prefix) == prefix;
            const bool registered = registered_uri != nullptr && ns != nullptr && ns->href != nullptr &&
                                    view(ns->href) == *registered_uri;
            if (!written_with_prefix && !registered) continue;
        }
        return SearchResult(element, it.xpath());
    }
    return SearchResult(tree.namespaces());
}

void handleSearchByNodeNameFailure(const SearchResult& /*result*/, const std::u16string& source,
                                   const std::u16string& name, const std::u16string& hintName) {
    vxErrMsgId(TOLVEN::io::xml::common::NodeNameNotFound(hintName, name, source));
}

}  // namespace tolven::io::xml::common::search
