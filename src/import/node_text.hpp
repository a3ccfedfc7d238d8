#pragma once
#include <libxml/tree.h>

#include <string>
#include <string_view>

namespace tolven::import {

// Appends the string value of a node to out: for an element the text of all its descendant text and
// CDATA nodes in document order ("Tap <b>Start</b> now" gives "Tap Start now"; comments and
// processing instructions are left out), for an attribute its value, for any other node its content.
void append_string_value(const xmlNode* node, std::string& out);

// The first attribute of element that passes test(uri, local); null when none does.
template <class Test>
const xmlAttr* first_attribute(const xmlNode* element, Test test) {
    for (const xmlAttr* a = element->properties; a != nullptr; a = a->next)
        if (test(a->ns != nullptr ? reinterpret_cast<const char*>(a->ns->href) : nullptr,
                 reinterpret_cast<const char*>(a->name)))
            return a;
    return nullptr;
}

}  // namespace tolven::import
