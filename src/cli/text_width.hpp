#pragma once
#include <cstddef>
#include <string_view>

namespace tolven::cli {

// Columns a UTF-8 text takes on a terminal, counted as code points: enough to align names in
// scripts that do not mix in double-width or combining characters.
std::size_t display_width(std::string_view text);

}  // namespace tolven::cli
