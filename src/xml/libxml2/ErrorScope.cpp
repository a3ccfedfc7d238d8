#include "xml/libxml2/ErrorScope.hpp"

#include <libxml/globals.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace tolven::io::xml::common::libxml2 {

ErrorScope::ErrorScope()
    : previous_generic_(xmlGenericError),
      previous_generic_context_(xmlGenericErrorContext),
      previous_structured_(xmlStructuredError),
      previous_structured_context_(xmlStructuredErrorContext) {
    // The macros name this thread's slots, so assigning them installs nothing process-wide.
    xmlGenericError = &ErrorScope::on_generic;
    xmlGenericErrorContext = this;
    xmlStructuredError = &ErrorScope::on_structured;
    xmlStructuredErrorContext = this;
}

ErrorScope::~ErrorScope() {
    xmlGenericError = previous_generic_;
    xmlGenericErrorContext = previous_generic_context_;
    xmlStructuredError = previous_structured_;
    xmlStructuredErrorContext = previous_structured_context_;
}

void ErrorScope::on_generic(void* self, const char* format, ...) {
    auto* scope = static_cast<ErrorScope*>(self);
    if (scope == nullptr || scope->text_.size() > 4096) return;
    char buffer[1024];
    va_list arguments;
    va_start(arguments, format);
    const int written = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    if (written > 0) scope->text_.append(buffer, std::min<std::size_t>(static_cast<std::size_t>(written), sizeof buffer - 1));
}

void ErrorScope::on_structured(void* self, xmlErrorPtr error) {
    auto* scope = static_cast<ErrorScope*>(self);
    if (scope == nullptr || error == nullptr || error->message == nullptr || scope->text_.size() > 4096) return;
    scope->text_.append(error->message);
    if (scope->text_.empty() || scope->text_.back() != '\n') scope->text_.push_back('\n');
}

std::string ErrorScope::first_message() const {
    const std::string text = trim(text_);
    return trim(std::string_view(text).substr(0, text.find('\n')));
}

void ensure_initialised() {
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
}

std::string trim(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(blanks);
    return std::string(text.substr(first, last - first + 1));
}

}  // namespace tolven::io::xml::common::libxml2
