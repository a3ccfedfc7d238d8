#pragma once
// Turns a selector into a path of child steps that can be followed while the document streams by,
// or says why it cannot be.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tolven::import {

// (prefix, URI) pairs a selector's prefixes are resolved with.
using NamespaceBindings = std::vector<std::pair<std::string, std::string>>;

// Which element or attribute names a step accepts. Names are compared as (namespace URI, local name).
struct NameTest {
    enum class Kind {
        Any,        // *
        Qualified,  // name or prefix:name; an unprefixed name is in no namespace
        LocalName,  // *[local-name()='name'], in any namespace
    };
    Kind kind = Kind::Any;
    std::optional<std::string> uri;  // Qualified only; none for no namespace
    std::string local;

    // uri is null for a node in no namespace.
    bool matches(const char* node_uri, const char* node_local) const;
};

struct PathStep {
    NameTest name;
    unsigned position = 0;  // [k]: the k-th sibling that passes the name test; 0 when not given
};

// Element steps from the context down, then optionally one attribute of the last element
// (of the context itself when there are no element steps).
struct PathPattern {
    std::vector<PathStep> elements;
    std::optional<NameTest> attribute;
    bool uses_positions() const;
};

// Compiles an absolute selector ("/a/b/@c") or, with relative = true, a selector relative to a
// context element ("b/c", "@c", "." or "" for the context itself). Supported: child steps with a
// name, a prefixed name, * or *[local-name()='name'], each optionally followed by a position [k],
// and a final attribute step; an absolute path may start with a parenthesized absolute path,
// "(/a/b)/c". Anything else yields a short reason, e.g. "uses a union ('|')".
std::variant<PathPattern, std::string> compile_path(std::string_view selector, bool relative,
                                                    const NamespaceBindings& namespaces);

}  // namespace tolven::import
