#include "text/typeconversion/fold_case.hpp"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace tolven::io::text::typeconversion {

char16_t fold_unit(char16_t c) noexcept {
    if (c < 0x80) return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
    if (U16_IS_SURROGATE(c)) return c;
    const UChar32 folded = u_foldCase(c, U_FOLD_CASE_DEFAULT);
    return folded <= 0xFFFF ? static_cast<char16_t>(folded) : c;
}

std::u16string fold(std::u16string_view text) {
    std::u16string out(text);
    for (char16_t& c : out) c = fold_unit(c);
    return out;
}

bool starts_with_folded(std::u16string_view text, std::u16string_view folded) noexcept {
    if (folded.size() > text.size()) return false;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        if (fold_unit(text[i]) != folded[i]) return false;
    }
    return true;
}

bool is_date_space(char16_t c) noexcept {
    // ICU writes no-break and narrow no-break spaces into some locales' patterns and names.
    return c == u' ' || c == u'\t' || c == u'\u00A0' || c == u'\u202F' || c == u'\u2009';
}

}  // namespace tolven::io::text::typeconversion
