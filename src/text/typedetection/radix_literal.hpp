#pragma once
// Integer literals written with a radix prefix.

#include <string_view>

namespace tolven::io::text::typedetection {

// True for "0x" or "0X" followed only by hexadecimal digits ("0x" alone included). Never throws.
bool is_hexadecimal_literal(std::u16string_view text) noexcept;
// True for "0b" or "0B" followed only by the digits 0 and 1 ("0b" alone included). Never throws.
bool is_binary_literal(std::u16string_view text) noexcept;

}  // namespace tolven::io::text::typedetection
