#include "xml/tree/Tree.hpp"

#include <cstring>
#include <vector>

namespace tolven::io::xml::common::tree {

namespace {

bool is_element(const xmlNode* node) { return node != nullptr && node->type == XML_ELEMENT_NODE; }

const xmlNode* first_element(const xmlNode* node) {
    while (node != nullptr && node->type != XML_ELEMENT_NODE) node = node->next;
    return node;
}

bool same_text(const xmlChar* a, const xmlChar* b) {
    if (a == b) return true;  // names usually come from the document's dictionary
    if (a == nullptr || b == nullptr) return false;
    return std::strcmp(reinterpret_cast<const char*>(a), reinterpret_cast<const char*>(b)) == 0;
}

const xmlChar* uri_of(const xmlNode* node) { return node->ns ? node->ns->href : nullptr; }

}  // namespace

unsigned long sibling_position(const xmlNode* element) {
    unsigned long position = 1;
    for (const xmlNode* s = element->prev; s != nullptr; s = s->prev)
        if (is_element(s) && same_text(s->name, element->name) && same_text(uri_of(s), uri_of(element))) ++position;
    return position;
}

Tree::Tree(const xmlDoc* document, const xpath::NamespaceMap& namespaces) noexcept
    : root_(document ? xmlDocGetRootElement(document) : nullptr), namespaces_(&namespaces) {}

Tree::Iterator& Tree::Iterator::operator++() {
    if (node_ == nullptr) return *this;
    if (const xmlNode* child = first_element(node_->children)) {
        node_ = child;
        ++depth_;
        return *this;
    }
    // Climb until an ancestor (or the node itself) has a following element sibling; the root's
    // siblings are not part of the tree.
    for (const xmlNode* n = node_; depth_ > 1; n = n->parent, --depth_) {
        if (const xmlNode* next = first_element(n->next)) {
            node_ = next;
            return *this;
        }
    }
    node_ = nullptr;
    depth_ = 0;
    return *this;
}

Tree::Iterator Tree::Iterator::operator++(int) {
    Iterator before = *this;
    ++*this;
    return before;
}

xpath::LazyXPath Tree::Iterator::xpath() const {
    xpath::LazyXPath path(*namespaces_);
    if (node_ == nullptr) return path;
    std::vector<const xmlNode*> chain;
    chain.reserve(depth_);
    for (const xmlNode* n = node_; is_element(n); n = n->parent) chain.push_back(n);
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) path.push_back(*it, sibling_position(*it));
    return path;
}

}  // namespace tolven::io::xml::common::tree
