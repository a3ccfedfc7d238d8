#include "cli/import/node_text.hpp"

namespace tolven::cli::import {

namespace {

std::string_view content(const xmlNode* n) {
    return n->content != nullptr ? std::string_view(reinterpret_cast<const char*>(n->content)) : std::string_view{};
}

bool is_text(const xmlNode* n) { return n->type == XML_TEXT_NODE || n->type == XML_CDATA_SECTION_NODE; }

}  // namespace

std::string_view own_text(const xmlNode* node, std::string& buffer) {
    if (node->type != XML_ELEMENT_NODE && node->type != XML_ATTRIBUTE_NODE) return content(node);
    const xmlNode* first = nullptr;
    const xmlNode* second = nullptr;
    for (const xmlNode* c = node->children; c != nullptr && second == nullptr; c = c->next)
        if (is_text(c)) (first == nullptr ? first : second) = c;
    if (first == nullptr) return {};
    if (second == nullptr) return content(first);
    buffer.clear();
    for (const xmlNode* c = first; c != nullptr; c = c->next)
        if (is_text(c)) buffer.append(content(c));
    return buffer;
}

}  // namespace tolven::cli::import
