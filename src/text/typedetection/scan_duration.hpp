#pragma once
// Recognises the shape of a duration: [+-]digits(:digits){1,3}[<decimal separator>digits].

#include <array>
#include <cstddef>
#include <string_view>

namespace tolven::io::text::typedetection {

// What scan_duration found. The views point into the scanned text; all but kind are meaningful
// only for Kind::Duration.
struct DurationShape {
    enum class Kind : unsigned char {
        None,       // not a duration; the text may still be a date or text
        Duration,   // two to four digit groups spanning the whole text
        Malformed,  // only digits and colons, but more than four groups or a trailing ':'
    };
    Kind kind = Kind::None;
    bool negative = false;
    std::size_t group_count = 0;
    std::array<std::u16string_view, 4> groups{};  // the first four groups, most significant first
    std::u16string_view fraction;                 // digits after the decimal separator, if any
};

// Scans the whole of text (already trimmed); decimal_separator introduces the fraction. Never throws.
DurationShape scan_duration(std::u16string_view text, char16_t decimal_separator) noexcept;

}  // namespace tolven::io::text::typedetection
