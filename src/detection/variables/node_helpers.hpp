#pragma once
// Writing a node as a selector step and as a child selector. Shared by the search and by the
// hint strategies so that every selector in a result is written the same way.

#include <libxml/tree.h>

#include <string>

#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::detection::variables {

// The node's step: the registered prefix of its namespace, ':' and its name ("" for a null node).
// A name that itself holds ':' is written as a local-name() test. An attribute's step has no '@'.
// Raises "TOLVEN:io:xml:common:Internal" ("Invalid node type") for nodes other than elements and
// attributes; an xmlAttr may be passed cast to const xmlNode*.
std::u16string make_name_step(const xmlNode* node, const common::xpath::NamespaceMap& namespaces);

// parent_selector + "/" + the node's step, with "@" in front of an attribute's step.
std::u16string make_child_selector(const xmlNode* node, const std::u16string& parent_selector,
                                   const common::xpath::NamespaceMap& namespaces);

}  // namespace tolven::io::xml::detection::variables
