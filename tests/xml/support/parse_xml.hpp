#pragma once
// Test helpers: documents from inline XML text, and the identifier and arguments of a raised error.

#include <libxml/tree.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/vcos/DocWrapper.hpp"

namespace tolven::test {

// Parses xml with the library's own loader (named "inline.xml" in messages).
std::shared_ptr<io::xml::common::vcos::DocWrapper> parse_xml(std::string_view xml);

// The root element of a parsed document.
const xmlNode* root_of(const io::xml::common::vcos::DocWrapper& doc);
// The element children of node, in document order.
std::vector<const xmlNode*> element_children(const xmlNode* node);

// What a call raised through the host's error path: its identifier and arguments ("" when nothing).
struct Raised {
    std::string id;
    std::vector<std::string> arguments;
};
Raised raised_by(const std::function<void()>& call);

}  // namespace tolven::test
