#pragma once
// The one exception type of the library.

#include <stdexcept>
#include <string>
#include <vector>

namespace tolven::xml {

// Every failure a caller can act on: a bad hint, a selector that selects nothing, an unreadable or
// malformed document, no table found, an output that cannot be written. It carries the message
// identifier (such as "TOLVEN:import:NoTableDetected"), the identifier's text arguments in order,
// and the English message with the arguments filled in, which what() also returns. The
// identifiers and their messages are listed in the README.
class Error : public std::runtime_error {
public:
    // Builds an error from its parts. Throws std::bad_alloc only.
    Error(std::string identifier, std::vector<std::string> arguments, std::string message);

    // The full identifier: a component ("TOLVEN:io:xml:detection", "TOLVEN:io:xml:common",
    // "TOLVEN:string", "TOLVEN:import"), a colon and a name. Never throws.
    const std::string& identifier() const noexcept { return identifier_; }
    // The identifier's arguments as UTF-8 text, in order. Never throws.
    const std::vector<std::string>& arguments() const noexcept { return arguments_; }
    // The message text (UTF-8), the same as what(). Never throws.
    const std::string& message() const noexcept { return message_; }
    // True when the input could not be read or is not well-formed XML (the identifiers
    // "TOLVEN:io:xml:common:FileNotReadable" and "TOLVEN:io:xml:common:MalformedDocument").
    bool input_error() const noexcept;

private:
    std::string identifier_;
    std::vector<std::string> arguments_;
    std::string message_;
};

// The catalog message of identifier with {1}..{n} replaced by arguments; an identifier the
// catalog lacks gives the identifier followed by its arguments. Throws std::bad_alloc only.
std::string format_message(const std::string& identifier, const std::vector<std::string>& arguments);

}  // namespace tolven::xml
