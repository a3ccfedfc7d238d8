#pragma once
// Keeps libxml2's own error printing off stderr while one call runs on this thread.

#include <libxml/xmlerror.h>

#include <string>
#include <string_view>

namespace tolven::io::xml::common::libxml2 {

// While alive, this thread's generic and structured libxml2 error handlers collect what libxml2
// reports instead of printing it; the previous handlers come back on destruction. libxml2 keeps
// these handlers per thread, so parses and evaluations on other threads are untouched.
class ErrorScope {
public:
    ErrorScope();
    ~ErrorScope();
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

    // The first line libxml2 reported while this scope was alive, trimmed; "" when none.
    std::string first_message() const;

private:
    static void on_generic(void* self, const char* format, ...);
    static void on_structured(void* self, xmlErrorPtr error);

    std::string text_;
    xmlGenericErrorFunc previous_generic_;
    void* previous_generic_context_;
    xmlStructuredErrorFunc previous_structured_;
    void* previous_structured_context_;
};

// Initialises libxml2 once per process before its first use (its own guard is not thread-safe).
void ensure_initialised();

// text without leading and trailing white space (libxml2's messages end in a line break).
std::string trim(std::string_view text);

}  // namespace tolven::io::xml::common::libxml2
