#include "tables/node_text.hpp"

#include <cstring>
#include <memory>

namespace tolven::tables {

namespace {
constexpr std::string_view kBlank = " \t\n\r";

const char* uri_of(const xmlNode* node) {
    return node->ns != nullptr ? reinterpret_cast<const char*>(node->ns->href) : "";
}
}  // namespace

std::vector<const xmlNode*> element_children(const xmlNode* node) {
    std::vector<const xmlNode*> out;
    for (const xmlNode* c = node->children; c != nullptr; c = c->next)
        if (c->type == XML_ELEMENT_NODE) out.push_back(c);
    return out;
}

bool has_element_children(const xmlNode* node) {
    for (const xmlNode* c = node->children; c != nullptr; c = c->next)
        if (c->type == XML_ELEMENT_NODE) return true;
    return false;
}

std::string_view first_text(const xmlNode* node) {
    for (const xmlNode* c = node->children; c != nullptr; c = c->next) {
        if ((c->type != XML_TEXT_NODE && c->type != XML_CDATA_SECTION_NODE) || c->content == nullptr) continue;
        const std::string_view text(reinterpret_cast<const char*>(c->content));
        if (text.find_first_not_of(kBlank) != std::string_view::npos) return text;
    }
    return {};
}

std::string flat_text(const xmlNode* node) {
    const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
    std::string out;
    bool space = false;
    for (const char* p = reinterpret_cast<const char*>(content.get()); p != nullptr && *p != '\0'; ++p) {
        if (kBlank.find(*p) != std::string_view::npos) {
            space = !out.empty();
            continue;
        }
        if (space) out.push_back(' ');
        space = false;
        out.push_back(*p);
    }
    return out;
}

bool same_name(const xmlNode* a, const xmlNode* b) {
    return a->type == XML_ELEMENT_NODE && b->type == XML_ELEMENT_NODE &&
           std::strcmp(reinterpret_cast<const char*>(a->name), reinterpret_cast<const char*>(b->name)) == 0 &&
           std::strcmp(uri_of(a), uri_of(b)) == 0;
}

std::string quoted(std::string_view text) {
    if (text.find('\'') == std::string_view::npos) return "'" + std::string(text) + "'";
    if (text.find('"') == std::string_view::npos) return "\"" + std::string(text) + "\"";
    return {};
}

}  // namespace tolven::tables
