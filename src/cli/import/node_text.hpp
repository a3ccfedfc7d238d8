#pragma once
#include <libxml/tree.h>

#include <string>
#include <string_view>

namespace tolven::cli::import {

// The text a node carries itself: for an element its text and CDATA children joined (the text of
// child elements belongs to those), for an attribute its value, for any other node its content.
// Borrows from the node when it has a single piece of text, else joins the pieces into buffer.
std::string_view own_text(const xmlNode* node, std::string& buffer);

// The first attribute of element that passes test(uri, local); null when none does.
template <class Test>
const xmlAttr* first_attribute(const xmlNode* element, Test test) {
    for (const xmlAttr* a = element->properties; a != nullptr; a = a->next)
        if (test(a->ns != nullptr ? reinterpret_cast<const char*>(a->ns->href) : nullptr,
                 reinterpret_cast<const char*>(a->name)))
            return a;
    return nullptr;
}

}  // namespace tolven::cli::import
