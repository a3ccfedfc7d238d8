#pragma once
// What a search by node name found: an element and the path that addresses it, or nothing.

#include <libxml/tree.h>

#include "xml/xpath/LazyXPath.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::common::search {

class SearchResult {
public:
    // Nothing found; the (empty) path still writes with namespaces, which must outlive the result.
    explicit SearchResult(const xpath::NamespaceMap& namespaces);
    // node found, addressed by xpath.
    SearchResult(const xmlNode* node, xpath::LazyXPath xpath);

    bool found() const noexcept { return node_ != nullptr; }
    explicit operator bool() const noexcept { return found(); }
    // Null when nothing was found.
    const xmlNode* node() const noexcept { return node_; }
    const xpath::LazyXPath& xpath() const noexcept { return xpath_; }

private:
    const xmlNode* node_;
    xpath::LazyXPath xpath_;
};

}  // namespace tolven::io::xml::common::search
