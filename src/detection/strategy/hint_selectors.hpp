#pragma once
// Evaluation of a selector hint, with the XML library's errors turned into the hint's own
// identifiers, and the hint-name checks of paths written from name hints.

#include <libxml/xpath.h>

#include <memory>
#include <string>
#include <string_view>

#include "detection/Table.hpp"
#include "xml/xpath/LazyXPath.hpp"
#include "xml/xpath/NodeList.hpp"

namespace tolven::io::xml::detection::strategy {

// The three selector hints, by the prefix of their identifiers.
enum class SelectorHint { TableSelector, RowSelector, VariableSelectors };

// The nodes expression selects over the whole document. The library's errors become
// "<hint>NotNodeSet" (result kind, expression), "<hint>UnregisteredNamespace" (the prefix) or,
// for any other XML error (a malformed expression included), "<hint>UnknownError" (its message).
// Selecting nothing is not an error here: each hint words that case itself.
common::xpath::NodeList evaluate_selector_hint(SelectorHint hint, const std::shared_ptr<xmlXPathContext>& context,
                                               std::u16string_view expression);

// The path written in style; a path that cannot be written as XPath raises
// "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint" with
// (selector_option, the rejected text, hint_name, hint_value).
Selector materialize_for_hint(const common::xpath::LazyXPath& path, common::xpath::XPathIndexStyle style,
                              const char16_t* selector_option, const char16_t* hint_name,
                              const std::u16string& hint_value);

// "(" expression ")": keeps a union or a predicate whole when a path is appended.
Selector parenthesize(std::u16string_view expression);

}  // namespace tolven::io::xml::detection::strategy
