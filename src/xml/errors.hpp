#pragma once
// Errors of the XML common library: the "TOLVEN:io:xml:common" message records, and the
// exception classes its XPath functions throw (callers translate those into their own identifiers).

#include <stdexcept>
#include <string>
#include <vector>

#include "host/except/MsgID.hpp"

namespace TOLVEN::io::xml::common {
#define TOLVEN_MESSAGE(COMPONENT, NAME, ARGC, TEXT) TOLVEN_COMMON_RECORD_##COMPONENT(NAME, ARGC)
#define TOLVEN_COMMON_RECORD_COMMON(NAME, ARGC) TOLVEN_DECLARE_MSGID(TOLVEN_COMPONENT_COMMON, NAME, ARGC)
#define TOLVEN_COMMON_RECORD_DETECTION(NAME, ARGC)
#define TOLVEN_COMMON_RECORD_STRING(NAME, ARGC)
#define TOLVEN_COMMON_RECORD_IMPORT(NAME, ARGC)
#define TOLVEN_COMMON_RECORD_CLI(NAME, ARGC)
#include "host/messages.def"
#undef TOLVEN_MESSAGE
#undef TOLVEN_COMMON_RECORD_COMMON
#undef TOLVEN_COMMON_RECORD_DETECTION
#undef TOLVEN_COMMON_RECORD_STRING
#undef TOLVEN_COMMON_RECORD_CLI
#undef TOLVEN_COMMON_RECORD_IMPORT
}  // namespace TOLVEN::io::xml::common

namespace tolven::io::xml::common::error {

// Base of the library's XPath errors. strings() are the texts the error carries, in a fixed
// order per class; message() is the one text a caller passes on when it passes one.
class XMLException : public std::runtime_error {
public:
    XMLException(std::vector<std::u16string> strings, std::u16string message);
    const std::vector<std::u16string>& strings() const noexcept { return strings_; }
    const std::u16string& message() const noexcept { return message_; }

private:
    std::vector<std::u16string> strings_;
    std::u16string message_;
};

// An expression that does not compile or evaluate, or a path that cannot be written as XPath.
// strings(): {expression} or {expression, libxml2's message}; message(): the expression
// followed by libxml2's message when there is one ("//[: Invalid expression").
class XMLInvalidXPathExpression : public XMLException {
public:
    explicit XMLInvalidXPathExpression(std::u16string expression, std::u16string libxml_message = {});
};

// An expression whose result is not a node set. strings(): {expression, result kind}, the kind
// being "number", "string" or "boolean"; message(): the expression.
class XMLInvalidNodeset : public XMLException {
public:
    XMLInvalidNodeset(std::u16string expression, std::u16string kind);
};

// An expression using a namespace prefix that is not registered. strings(): {prefix};
// message(): the prefix (or libxml2's message when the prefix could not be isolated).
class XMLNamespaceError : public XMLException {
public:
    explicit XMLNamespaceError(std::u16string prefix_or_message);
};

}  // namespace tolven::io::xml::common::error
