#include "import/RowAncestor.hpp"

#include <libxml/xpathInternals.h>

#include <cstring>

#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/NodeList.hpp"
#include "xml/xpath/make_context.hpp"

namespace tolven::import {

namespace {

namespace xpath = io::xml::common::xpath;

const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

const char* uri_of(const xmlNode* element) { return element->ns != nullptr ? chars(element->ns->href) : nullptr; }

bool same_name(const xmlNode* a, const xmlNode* b) {
    const char* ua = uri_of(a);
    const char* ub = uri_of(b);
    if ((ua == nullptr) != (ub == nullptr) || (ua != nullptr && std::strcmp(ua, ub) != 0)) return false;
    return std::strcmp(chars(a->name), chars(b->name)) == 0;
}

// The step selecting elements named as element: "name", "prefix:name" with a bound prefix, or a
// local-name() and namespace-uri() test; none when the URI holds both kinds of quote.
std::optional<std::string> step(const xmlNode* element, const NamespaceBindings& namespaces) {
    const std::string local = chars(element->name);
    const char* uri = uri_of(element);
    if (uri == nullptr) return local;
    for (const auto& [prefix, bound] : namespaces)
        if (bound == uri && !prefix.empty()) return prefix + ":" + local;
    const std::string u = uri;
    const char quote = u.find('\'') == std::string::npos ? '\'' : '"';
    if (u.find(quote) != std::string::npos) return std::nullopt;
    return "*[local-name()='" + local + "' and namespace-uri()=" + quote + u + quote + "]";
}

}  // namespace

std::optional<RowAncestor> find_row_ancestor(const io::xml::common::vcos::DocWrapper& document,
                                             const std::vector<std::string>& selectors,
                                             const NamespaceBindings& namespaces) {
    auto context = xpath::make_context(document.doc());
    for (const auto& [prefix, uri] : namespaces)
        xmlXPathRegisterNs(context.get(), reinterpret_cast<const xmlChar*>(prefix.c_str()),
                           reinterpret_cast<const xmlChar*>(uri.c_str()));

    // The common path as the elements of the first node's path, and each node's element and depth.
    std::vector<const xmlNode*> common;
    std::vector<std::pair<const xmlNode*, std::size_t>> elements;
    std::vector<const xmlNode*> path;
    bool first = true;
    try {
        for (const auto& selector : selectors) {
            const xpath::NodeList nodes(context, fl::i18n::utf8_to_ustring(selector));
            for (std::size_t i = 0; i < nodes.size(); ++i) {
                const xmlNode* node = nodes.get_node_at_index(i);
                const xmlNode* element = node->type == XML_ATTRIBUTE_NODE ? node->parent : node;
                if (element == nullptr || element->type != XML_ELEMENT_NODE) return std::nullopt;
                path.clear();
                for (const xmlNode* e = element; e != nullptr && e->type == XML_ELEMENT_NODE; e = e->parent)
                    path.insert(path.begin(), e);
                elements.emplace_back(element, path.size() - 1);
                if (first) {
                    common = path;
                    first = false;
                    continue;
                }
                std::size_t k = 0;
                while (k < common.size() && k < path.size() && same_name(common[k], path[k])) ++k;
                common.resize(k);
            }
        }
    } catch (const io::xml::common::error::XMLException&) {
        return std::nullopt;
    }
    if (common.empty()) return std::nullopt;

    // The rows repeat when the nodes lie in at least two elements at the end of the common path.
    const std::size_t depth = common.size() - 1;
    const xmlNode* first_row = nullptr;
    bool repeats = false;
    for (const auto& [element, element_depth] : elements) {
        const xmlNode* row = element;
        for (std::size_t d = element_depth; d > depth; --d) row = row->parent;
        if (first_row == nullptr) first_row = row;
        else if (row != first_row) repeats = true;
        if (repeats) break;
    }
    if (!repeats) return std::nullopt;

    RowAncestor rows;
    for (const xmlNode* e : common) {
        const auto s = step(e, namespaces);
        if (!s) return std::nullopt;
        rows.selector += "/" + *s;
        PathStep p;
        p.name.kind = NameTest::Kind::Qualified;
        if (const char* uri = uri_of(e)) p.name.uri = uri;
        p.name.local = chars(e->name);
        rows.pattern.elements.push_back(std::move(p));
    }
    return rows;
}

}  // namespace tolven::import
