#pragma once
// A path of element steps from the root element, written as XPath text only when asked.

#include <libxml/tree.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "xml/xpath/register_detected_namespaces.hpp"

namespace tolven::io::xml::common::xpath {

enum class XPathIndexStyle : int {
    // "[k]" on a step only when its element has a like-named element sibling.
    IndexRepeated = 0,
    // "[k]" on every step.
    IndexAll = 1,
    // No positions: the path selects every element along it.
    NoIndex = 2,
    NoIndexAll = 3,
};

class LazyXPath {
public:
    // An empty path whose steps will be written with the prefixes of namespaces (which must outlive it).
    explicit LazyXPath(const NamespaceMap& namespaces) : namespaces_(&namespaces) {}

    // Appends a step for node, its 1-based position among like-named element siblings.
    void push_back(const xmlNode* node, unsigned long position) { steps_.emplace_back(node, position); }
    void pop_back() { steps_.pop_back(); }
    bool empty() const noexcept { return steps_.empty(); }
    std::size_t size() const noexcept { return steps_.size(); }
    const xmlNode* back() const { return steps_.back().first; }
    const NamespaceMap& namespaces() const noexcept { return *namespaces_; }

    // The path as XPath text: "/" step "/" step ...; "" for an empty path. A step is the registered
    // prefix, ':' and the local name (the local name alone without a namespace; a local name holding
    // ':' is written *[local-name()='a:b']). Throws error::XMLInvalidXPathExpression carrying the
    // text it would have written when an element's namespace has no registered prefix.
    std::u16string materialize(XPathIndexStyle style) const;

private:
    const NamespaceMap* namespaces_;
    std::vector<std::pair<const xmlNode*, unsigned long>> steps_;
};

}  // namespace tolven::io::xml::common::xpath
