#pragma once
// Small readers of element children and text shared by the candidate finders.

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

namespace tolven::tables {

// The element children of node, in document order.
std::vector<const xmlNode*> element_children(const xmlNode* node);
// True when node has an element among its children (cheaper than element_children(node).empty()).
bool has_element_children(const xmlNode* node);
// The first non-blank text or CDATA child of node, untrimmed; "" when there is none. A view into the document.
std::string_view first_text(const xmlNode* node);
// All text below node, white space collapsed to single spaces and trimmed.
std::string flat_text(const xmlNode* node);
// True when a and b are elements of the same namespace URI and local name.
bool same_name(const xmlNode* a, const xmlNode* b);
// The XPath string literal of text: '...' or "..."; "" when text holds both quote characters.
std::string quoted(std::string_view text);

}  // namespace tolven::tables
