#pragma once
// Settings that shape how values are read as numbers and dates; the same settings drive
// detection and conversion so that a detected type always converts.

#include <string>

namespace tolven::io::text::typedetection {

struct TypeAnalyzerOptions {
    char16_t thousands_separator = 0;          // 0: none
    char16_t decimal_separator = u'.';
    std::u16string exponent_characters = u"eEdD";
    bool trim_nonnumeric = false;
    std::u16string date_locale;                // "" means en_US
    std::u16string whitespace = u" \t\n\r";
};

}  // namespace tolven::io::text::typedetection
