#include "import/node_text.hpp"

namespace tolven::import {

namespace {

void append_content(const xmlNode* n, std::string& out) {
    if (n->content != nullptr) out.append(reinterpret_cast<const char*>(n->content));
}

bool is_text(const xmlNode* n) { return n->type == XML_TEXT_NODE || n->type == XML_CDATA_SECTION_NODE; }

}  // namespace

void append_string_value(const xmlNode* node, std::string& out) {
    if (node->type != XML_ELEMENT_NODE && node->type != XML_ATTRIBUTE_NODE) {
        append_content(node, out);
        return;
    }
    // Walked without recursion, so deep nesting cannot exhaust the stack.
    const xmlNode* n = node->children;
    while (n != nullptr) {
        if (is_text(n)) append_content(n, out);
        if (n->type == XML_ELEMENT_NODE && n->children != nullptr) {
            n = n->children;
            continue;
        }
        while (n != nullptr && n->next == nullptr) {
            n = n->parent;
            if (n == node) return;
        }
        if (n != nullptr) n = n->next;
    }
}

}  // namespace tolven::import
