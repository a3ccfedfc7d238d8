#include "cli/text_width.hpp"

#include <algorithm>

namespace tolven::cli {

std::size_t display_width(std::string_view text) {
    // Continuation bytes (10xxxxxx) do not start a code point.
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace tolven::cli
