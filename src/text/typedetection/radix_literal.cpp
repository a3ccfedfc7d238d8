#include "text/typedetection/radix_literal.hpp"

#include <algorithm>

#include "text/constants.hpp"

namespace tolven::io::text::typedetection {

namespace {

char16_t to_upper_ascii(char16_t c) noexcept { return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c; }

template <typename IsDigit>
bool is_radix_literal(std::u16string_view text, std::u16string_view prefix, IsDigit is_digit) noexcept {
    if (text.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (to_upper_ascii(text[i]) != prefix[i]) return false;
    }
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(prefix.size()), text.end(), is_digit);
}

}  // namespace

bool is_hexadecimal_literal(std::u16string_view text) noexcept {
    return is_radix_literal(text, constants::hexadecimal_prefix, [](char16_t c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    });
}

bool is_binary_literal(std::u16string_view text) noexcept {
    return is_radix_literal(text, constants::binary_prefix, [](char16_t c) { return c == u'0' || c == u'1'; });
}

}  // namespace tolven::io::text::typedetection
