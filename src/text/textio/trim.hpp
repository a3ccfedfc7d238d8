#pragma once
// Whitespace trimming of UTF-8 text, as values are read from a document.

#include <string_view>

namespace tolven::io::text::textio {

// text without leading and trailing " \t\n\r"; empty when nothing else is left. Never throws.
std::string_view trim_whitespace(std::string_view text) noexcept;

}  // namespace tolven::io::text::textio
