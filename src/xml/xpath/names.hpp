#pragma once
// Small helpers that write node names and selector steps.

#include <libxml/tree.h>

#include <string>
#include <string_view>

#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::common::xpath {

// The first prefix registered for uri; "" when none (an empty uri looks up "no namespace").
std::string lookup_namespace_prefix(const NamespaceMap& namespaces, std::string_view uri);
// True when name contains ':'.
bool has_colon(std::u16string_view name);
// prefix followed by ':' for a non-empty prefix; "" for an empty one.
std::u16string add_colon(std::u16string_view prefix);
// A step that matches an element by its full local name: *[local-name()='name'].
std::u16string make_local_name_selector(std::u16string_view name);
// A namespace declaration as written: "xmlns" or "xmlns:p".
std::u16string makeWYSIWYGNodeName(const xmlNs* ns);
// The qualified name as written in the document: the node's own prefix, ':' and its local name
// (the local name alone without a prefix); works for elements and attributes.
std::u16string written_name(const xmlNode* node);

}  // namespace tolven::io::xml::common::xpath
