#pragma once
// What a streaming parse reports, in document order: element starts with their attributes, element
// ends and character data. Comments and processing instructions are not reported.

#include <libxml/xmlstring.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace tolven::io::xml::common::parser {

inline const char* chars(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

// Names are interned in the parse's dictionary: within one parse, equal names are equal pointers
// (PushParser::intern gives the pointer of any name).
struct Attribute {
    const char* local;
    const char* uri;  // null: in no namespace
    std::string_view value;
};

// One element start; its pointers are valid only during the call.
struct ElementEvent {
    const char* local;
    const char* uri;  // null: in no namespace
    int attribute_count;
    const xmlChar** attributes;  // libxml2's five pointers per attribute
    const char* prefix = nullptr;  // as written; null without one
    // The namespaces this element declares: libxml2's (prefix or null, URI) pointer pairs.
    int namespace_count = 0;
    const xmlChar** namespaces = nullptr;

    Attribute attribute(int i) const {
        const xmlChar* const* a = attributes + 5 * i;
        return {chars(a[0]), chars(a[2]), std::string_view(chars(a[3]), static_cast<std::size_t>(a[4] - a[3]))};
    }
    // The value of the first attribute that passes test(uri, local); none when none does.
    template <class Test>
    std::optional<std::string_view> find_attribute(Test test) const {
        for (int i = 0; i < attribute_count; ++i) {
            const Attribute a = attribute(i);
            if (test(a.uri, a.local)) return a.value;
        }
        return std::nullopt;
    }
};

// Receives the events of a PushParser. Each call returns false to stop the parse: nothing more is
// read and the parse ends without an error. An exception thrown here ends the parse and leaves
// PushParser::feed or finish.
class SaxHandler {
public:
    virtual ~SaxHandler() = default;
    virtual bool start_element(const ElementEvent& element) = 0;
    virtual bool end_element() = 0;
    // Character data (text, CDATA, the replacement text of entities), in pieces as they are parsed.
    virtual bool text(std::string_view text) = 0;
};

}  // namespace tolven::io::xml::common::parser
