#include "xml/xpath/register_detected_namespaces.hpp"

#include <libxml/tree.h>
#include <libxml/xpathInternals.h>

#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "xml/errors.hpp"
#include "xml/xpath/make_context.hpp"

namespace tolven::io::xml::common::xpath {

namespace {

using Pair = std::pair<std::string, std::string>;  // (prefix, URI)

std::string_view view(const xmlChar* text) {
    return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

[[noreturn]] void raise_invalid(const std::string& what) {
    vxErrMsgId(TOLVEN::io::xml::common::InvalidRegisteredNamespaces(what));
}

// The caller's pairs, checked whole before anything is registered.
std::vector<Pair> read_registered_pairs(const Harnvale::String::StringPtr& table) {
    std::vector<Pair> pairs;
    if (!table) return pairs;
    const std::size_t rows = table->rows();
    const std::size_t cols = table->cols();
    // null, 0-by-0, 0-by-2 and a missing scalar all mean "no pairs".
    if (rows == 0 && (cols == 0 || cols == 2)) return pairs;
    if (rows == 1 && cols == 1 && table->isMissing(0)) return pairs;
    if (cols != 2) {
        raise_invalid("it must be an N-by-2 string array of (prefix, URI) rows, but it is " + std::to_string(rows) +
                      "-by-" + std::to_string(cols) + ".");
    }
    pairs.reserve(rows);
    std::unordered_map<std::string, std::pair<std::size_t, std::size_t>> first_use;  // prefix -> (pair, row)
    for (std::size_t r = 0; r < rows; ++r) {
        const std::string row = "row " + std::to_string(r + 1);
        const auto& prefix = table->at(r, 0);
        const auto& uri = table->at(r, 1);
        if (!prefix) raise_invalid(row + ": the prefix is missing.");
        if (!uri) raise_invalid(row + ": the URI is missing.");
        if (prefix->empty()) raise_invalid(row + ": the prefix is empty.");
        if (uri->empty()) raise_invalid(row + ": the URI is empty.");
        std::string prefix_text = fl::i18n::ustring_to_utf8(*prefix);
        if (prefix_text == "xml" || prefix_text == "xmlns") {
            raise_invalid(row + ": the prefix '" + prefix_text + "' is reserved.");
        }
        std::string uri_text = fl::i18n::ustring_to_utf8(*uri);
        const auto [earlier, added] = first_use.try_emplace(prefix_text, pairs.size(), r + 1);
        if (!added) {
            const Pair& first = pairs[earlier->second.first];
            if (first.second == uri_text) continue;  // the same pair again registers nothing new
            raise_invalid(row + ": the prefix '" + prefix_text + "' is already bound to '" + first.second +
                          "' by row " + std::to_string(earlier->second.second) + ".");
        }
        pairs.emplace_back(std::move(prefix_text), std::move(uri_text));
    }
    return pairs;
}

// The registration of one call: what is bound, and in which order it was bound.
class Registrar {
public:
    explicit Registrar(xmlXPathContext* context) : context_(context) {
        // XPath knows the xml prefix by itself: it is never registered or reported,
        // but the XML namespace is always written with it.
        prefixes_.emplace(reinterpret_cast<const char*>(XML_XML_NAMESPACE), "xml");
        bound_.emplace("xml", reinterpret_cast<const char*>(XML_XML_NAMESPACE));
        bound_.emplace("xmlns", "http://www.w3.org/2000/xmlns/");
    }

    // Caller pairs come checked: their prefixes are distinct and none is reserved.
    void register_caller_pair(const Pair& pair) { bind(pair.first, pair.second); }

    // One namespace declaration met in the document.
    void register_declaration(const xmlNs* ns) {
        const std::string_view uri = view(ns->href);
        if (uri.empty()) return;                                  // xmlns="" undeclares
        if (uri == view(XML_XML_NAMESPACE)) return;               // always "xml"
        const std::string_view declared = view(ns->prefix);
        if (declared == "xml") return;
        lookup_key_.assign(uri);
        if (prefixes_.count(lookup_key_) != 0) {                  // the URI already has a prefix
            prefix_key_.assign(declared);
            if (!declared.empty() && bound_.count(prefix_key_) == 0) aliases_.push_back(ns);
            return;
        }
        const std::string base = declared.empty() ? std::string("ns") : std::string(declared);
        bind(free_prefix(base), lookup_key_);
    }

    // A second prefix a document declares for a URI is registered too, after everything else and
    // only where it is still free, so a selector may use either prefix and nothing else moves.
    void register_aliases() {
        for (const xmlNs* ns : aliases_) {
            prefix_key_.assign(view(ns->prefix));
            if (bound_.count(prefix_key_) == 0) bind(prefix_key_, std::string(view(ns->href)));
        }
    }

    DetectionResult result() && {
        auto table = Harnvale::String::createStringArray(order_.size(), 2);
        for (std::size_t r = 0; r < order_.size(); ++r) {
            table->set(r, 0, fl::i18n::utf8_to_ustring(order_[r].first));
            table->set(r, 1, fl::i18n::utf8_to_ustring(order_[r].second));
        }
        return DetectionResult{std::move(table), std::move(prefixes_)};
    }

private:
    // The first of base, base2, base3, ... that is free. Prefixes are never unbound, so the search
    // for a base resumes where it stopped last time instead of counting from 2 again.
    std::string free_prefix(const std::string& base) {
        if (bound_.count(base) == 0) return base;
        unsigned& n = next_number_.try_emplace(base, 2).first->second;
        std::string prefix = base + std::to_string(n);
        while (bound_.count(prefix) != 0) prefix = base + std::to_string(++n);
        return prefix;
    }

    void bind(const std::string& prefix, const std::string& uri) {
        if (!register_prefix(context_, prefix.c_str(), uri.c_str())) {
            vxErrMsgId(TOLVEN::io::xml::common::Internal("cannot register the namespace prefix '" + prefix + "'"));
        }
        bound_.emplace(prefix, uri);
        prefixes_.emplace(uri, prefix);  // keeps the first prefix of a URI
        order_.emplace_back(prefix, uri);
    }

    xmlXPathContext* context_;
    std::unordered_map<std::string, std::string> bound_;  // prefix -> URI
    std::unordered_map<std::string, unsigned> next_number_;  // base -> the number free_prefix tries first
    NamespaceMap prefixes_;                               // URI -> first prefix
    std::vector<Pair> order_;
    std::vector<const xmlNs*> aliases_;  // declarations of a URI that had a prefix, under a free one
    std::string lookup_key_;  // reused, so most declarations cost no allocation
    std::string prefix_key_;
};

// Every element's namespace declarations, in document order: an iterative pre-order walk that
// touches each element once and copies nothing unless a declaration is new.
void register_document_declarations(const xmlDoc* doc, Registrar& registrar) {
    const xmlNode* node = xmlDocGetRootElement(const_cast<xmlDoc*>(doc));
    while (node != nullptr) {
        for (const xmlNs* ns = node->nsDef; ns != nullptr; ns = ns->next) registrar.register_declaration(ns);

        const xmlNode* child = node->children;
        while (child != nullptr && child->type != XML_ELEMENT_NODE) child = child->next;
        if (child != nullptr) {
            node = child;
            continue;
        }
        // No element child: the next element sibling of this node or of its nearest ancestor.
        while (node != nullptr) {
            const xmlNode* sibling = node->next;
            while (sibling != nullptr && sibling->type != XML_ELEMENT_NODE) sibling = sibling->next;
            if (sibling != nullptr) {
                node = sibling;
                break;
            }
            node = node->parent;
            if (node != nullptr && node->type != XML_ELEMENT_NODE) node = nullptr;  // back at the document
        }
    }
}

}  // namespace

DetectionResult register_detected_namespaces(const libxml2::DocPtr& doc, std::shared_ptr<xmlXPathContext> context,
                                             Harnvale::String::StringPtr registeredNamespaces, bool detectNamespaces) {
    if (!context) throw std::invalid_argument("register_detected_namespaces: no XPath context");
    const std::vector<Pair> pairs = read_registered_pairs(registeredNamespaces);

    Registrar registrar(context.get());
    for (const Pair& pair : pairs) registrar.register_caller_pair(pair);
    if (detectNamespaces && doc) {
        register_document_declarations(doc.get(), registrar);
        registrar.register_aliases();
    }
    return std::move(registrar).result();
}

}  // namespace tolven::io::xml::common::xpath
