#pragma once
// Whitespace trimming of UTF-8 text, as values are read from a document.

#include <string_view>

namespace tolven::io::text::textio {

// text without leading and trailing " \t\n\r"; empty when nothing else is left. Never throws.
// Inline: every value read is trimmed, and most have nothing to trim.
inline std::string_view trim_whitespace(std::string_view text) noexcept {
    const auto blank = [](char c) noexcept { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    std::size_t first = 0, end = text.size();
    while (first < end && blank(text[first])) ++first;
    if (first == end) return {};
    while (blank(text[end - 1])) --end;
    return text.substr(first, end - first);
}

}  // namespace tolven::io::text::textio
