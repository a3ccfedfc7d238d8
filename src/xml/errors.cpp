#include "xml/errors.hpp"

#include <utility>

#include "host/utf.hpp"

namespace tolven::io::xml::common::error {

XMLException::XMLException(std::vector<std::u16string> strings, std::u16string message)
    : std::runtime_error(fl::i18n::ustring_to_utf8(message)),
      strings_(std::move(strings)),
      message_(std::move(message)) {}

namespace {
std::vector<std::u16string> expression_strings(const std::u16string& expression, const std::u16string& libxml_message) {
    if (libxml_message.empty()) return {expression};
    return {expression, libxml_message};
}
std::u16string expression_message(const std::u16string& expression, const std::u16string& libxml_message) {
    if (libxml_message.empty()) return expression;
    return expression + u": " + libxml_message;
}
}  // namespace

XMLInvalidXPathExpression::XMLInvalidXPathExpression(std::u16string expression, std::u16string libxml_message)
    : XMLException(expression_strings(expression, libxml_message), expression_message(expression, libxml_message)) {}

XMLInvalidNodeset::XMLInvalidNodeset(std::u16string expression, std::u16string kind)
    : XMLException({expression, std::move(kind)}, expression) {}

XMLNamespaceError::XMLNamespaceError(std::u16string prefix_or_message)
    : XMLException({prefix_or_message}, prefix_or_message) {}

}  // namespace tolven::io::xml::common::error
