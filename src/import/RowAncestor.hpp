#pragma once
// Rows for a table that has no row elements of its own, as with variable hints: the nearest element
// that holds each variable's nodes and repeats, so that every value is taken within its row and a
// row without one variable leaves that variable missing rather than shifting later values.

#include <optional>
#include <string>
#include <vector>

#include "import/PathMatcher.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::import {

struct RowAncestor {
    std::string selector;  // XPath of the rows, with namespaces' prefixes where they are bound
    PathPattern pattern;   // the same rows for the path matcher
};

// Evaluates selectors on document and takes the deepest path of element names (namespace URI and
// local name, from the root) that every selected node lies on (an attribute on its element); the rows
// are the elements at the end of that path, when the selected nodes lie in more than one of them.
// None when they all lie in one, when a selector cannot be evaluated or selects other than elements
// and attributes, or when the path cannot be written as XPath.
std::optional<RowAncestor> find_row_ancestor(const io::xml::common::vcos::DocWrapper& document,
                                             const std::vector<std::string>& selectors,
                                             const NamespaceBindings& namespaces);

}  // namespace tolven::import
