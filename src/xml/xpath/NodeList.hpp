#pragma once
// The nodes an XPath expression selects.

#include <libxml/xpath.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace tolven::io::xml::common::xpath {

class NodeList {
public:
    // Evaluates expression on context (relative to context_node when given, else the document).
    // Throws error::XMLNamespaceError for an unregistered prefix, error::XMLInvalidNodeset when the
    // result is not a node set, error::XMLInvalidXPathExpression for any other failure.
    // Errors are captured per evaluation: no process-wide handler outlives the call.
    NodeList(const std::shared_ptr<xmlXPathContext>& context, std::u16string_view expression,
             const xmlNode* context_node = nullptr);

    std::size_t size() const noexcept;
    bool empty() const noexcept { return size() == 0; }
    const xmlNode* get_node_at_index(std::size_t i) const;
    bool is_element_node(std::size_t i) const;

private:
    struct ObjectDeleter {
        void operator()(xmlXPathObject* object) const noexcept;
    };
    std::unique_ptr<xmlXPathObject, ObjectDeleter> result_;
};

}  // namespace tolven::io::xml::common::xpath
