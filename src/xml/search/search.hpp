#pragma once
// Finding elements by the names users write.

#include <libxml/tree.h>

#include <string>
#include <string_view>

#include "xml/search/SearchResult.hpp"
#include "xml/tree/Tree.hpp"

namespace tolven::io::xml::common::search {

// The first element of tree, in document order, that name designates:
//  - "p:local" designates an element of that local name whose prefix as written is p, or whose
//    namespace URI is the one registered for p in the tree's namespace map;
//  - a name without ':' designates the local name, whatever the element's prefix or namespace.
// Only the first ':' separates the prefix. Not found: a result holding no node.
SearchResult searchForRootNodeByName(const tree::Tree& tree, const std::u16string& name);

// Raises "TOLVEN:io:xml:common:NodeNameNotFound" with hintName, name and source (the document's
// name) for a search that found nothing. Never returns.
[[noreturn]] void handleSearchByNodeNameFailure(const SearchResult& result, const std::u16string& source,
                                                const std::u16string& name, const std::u16string& hintName);

// True when the element's or attribute's name as written (prefix ':' local name, or the local
// name alone without a prefix) is exactly name (UTF-8). An xmlAttr may be passed cast to xmlNode.
bool has_written_name(const xmlNode* node, std::string_view name) noexcept;

}  // namespace tolven::io::xml::common::search
