#pragma once
// The elements of a document in document order (pre-order), with the path of each on demand.

#include <libxml/tree.h>

#include <cstddef>
#include <iterator>

#include "xml/xpath/LazyXPath.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::common::tree {

// 1 + the number of earlier element siblings with the same namespace URI and local name.
unsigned long sibling_position(const xmlNode* element);

// A view of a document's element tree; the document and the namespace map must outlive it and
// its iterators. Only elements are visited: attributes and namespace declarations are read from
// the element that carries them.
class Tree {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = const xmlNode*;
        using difference_type = std::ptrdiff_t;
        using pointer = const xmlNode* const*;
        using reference = const xmlNode* const&;

        Iterator() = default;

        reference operator*() const noexcept { return node_; }
        Iterator& operator++();
        Iterator operator++(int);
        bool operator==(const Iterator& other) const noexcept { return node_ == other.node_; }

        // 1 for the root element, 2 for its children, ...
        std::size_t depth() const noexcept { return depth_; }
        // The path from the root element to the current element, each step with its position among
        // like-named siblings. Built when asked, so a walk that never asks pays nothing for it.
        xpath::LazyXPath xpath() const;

    private:
        friend class Tree;
        Iterator(const xmlNode* node, const xpath::NamespaceMap* namespaces) noexcept
            : node_(node), namespaces_(namespaces), depth_(node ? 1 : 0) {}

        const xmlNode* node_ = nullptr;
        const xpath::NamespaceMap* namespaces_ = nullptr;
        std::size_t depth_ = 0;
    };

    // namespaces: the prefixes every path built from this tree is written with.
    Tree(const xmlDoc* document, const xpath::NamespaceMap& namespaces) noexcept;

    // The root element; begin() == end() when the document has none.
    Iterator begin() const noexcept { return Iterator(root_, namespaces_); }
    Iterator end() const noexcept { return Iterator(nullptr, namespaces_); }

    const xmlNode* root() const noexcept { return root_; }
    const xpath::NamespaceMap& namespaces() const noexcept { return *namespaces_; }

private:
    const xmlNode* root_;
    const xpath::NamespaceMap* namespaces_;
};

}  // namespace tolven::io::xml::common::tree
