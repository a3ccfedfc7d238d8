#include "xml/search/SearchResult.hpp"

#include <utility>

namespace tolven::io::xml::common::search {

SearchResult::SearchResult(const xpath::NamespaceMap& namespaces) : node_(nullptr), xpath_(namespaces) {}

SearchResult::SearchResult(const xmlNode* node, xpath::LazyXPath xpath) : node_(node), xpath_(std::move(xpath)) {}

}  // namespace tolven::io::xml::common::search
