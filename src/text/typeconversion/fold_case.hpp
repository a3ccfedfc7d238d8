#pragma once
// Case-insensitive matching of names and literals inside date texts, without allocating.

#include <cstddef>
#include <string>
#include <string_view>

namespace tolven::io::text::typeconversion {

// The simple case folding of one UTF-16 unit; surrogates are returned as they are. Never throws.
char16_t fold_unit(char16_t c) noexcept;
// text with every unit folded. Throws std::bad_alloc.
std::u16string fold(std::u16string_view text);
// True when text begins with folded (already folded) when text is folded unit by unit. Never throws.
bool starts_with_folded(std::u16string_view text, std::u16string_view folded) noexcept;
// True for the blanks that separate words of a date: space, tab and the no-break spaces. Never throws.
bool is_date_space(char16_t c) noexcept;

}  // namespace tolven::io::text::typeconversion
