#pragma once
// Whitespace trimming of UTF-8 text, as values are read from a document.

#include <cstdint>
#include <string_view>

namespace tolven::io::text::textio {

// One of " \t\n\r": one comparison and a bit test rather than four comparisons.
inline bool blank(char c) noexcept {
    constexpr std::uint64_t kBlanks = std::uint64_t{1} << ' ' | std::uint64_t{1} << '\t' | std::uint64_t{1} << '\n' |
                                      std::uint64_t{1} << '\r';
    const auto u = static_cast<unsigned char>(c);
    return u <= ' ' && (kBlanks >> u & 1) != 0;
}

// text without leading and trailing " \t\n\r"; empty when nothing else is left. Never throws.
// Inline: every value read is trimmed, and most have nothing to trim, which the first and last
// bytes tell at once.
inline std::string_view trim_whitespace(std::string_view text) noexcept {
    std::size_t first = 0, end = text.size();
    if (end != 0 && !blank(text[0]) && !blank(text[end - 1])) return text;
    while (first < end && blank(text[first])) ++first;
    if (first == end) return {};
    while (blank(text[end - 1])) --end;
    return text.substr(first, end - first);
}

}  // namespace tolven::io::text::textio
