#include "text/typedetection/scan_duration.hpp"

#include <algorithm>

#include "text/constants.hpp"

namespace tolven::io::text::typedetection {

namespace {

// The longest duration format ("dd:hh:mm:ss") fixes how many groups a duration may have.
constexpr std::size_t max_groups =
    static_cast<std::size_t>(std::count(constants::duration_formats[0].begin(), constants::duration_formats[0].end(),
                                        u':')) + 1;
static_assert(max_groups == std::tuple_size_v<decltype(DurationShape::groups)>);

bool is_digit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

std::size_t skip_digits(std::u16string_view text, std::size_t i) noexcept {
    while (i < text.size() && is_digit(text[i])) ++i;
    return i;
}

}  // namespace

namespace {

// Fills shape's fields as far as the scan gets and says what the text is.
DurationShape::Kind scan_into(std::u16string_view text, char16_t decimal_separator, DurationShape& shape) noexcept {
    using Kind = DurationShape::Kind;
    std::size_t i = 0;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
        shape.negative = text[i] == u'-';
        ++i;
    }
    std::size_t groups = 0;
    for (;;) {
        const std::size_t start = i;
        i = skip_digits(text, i);
        if (i == start) {
            // "12:" and "1:2:3:" look like durations cut short; anything else is not duration-like.
            return groups > 0 && i == text.size() ? Kind::Malformed : Kind::None;
        }
        if (groups < max_groups) shape.groups[groups] = text.substr(start, i - start);
        ++groups;
        if (i == text.size() || text[i] != u':') break;
        ++i;
    }
    shape.group_count = std::min(groups, max_groups);
    if (i < text.size() && text[i] == decimal_separator) {
        const std::size_t start = ++i;
        i = skip_digits(text, i);
        if (i == start) return Kind::None;
        shape.fraction = text.substr(start, i - start);
    }
    if (i != text.size()) return Kind::None;
    if (groups > max_groups) return Kind::Malformed;
    return groups >= 2 ? Kind::Duration : Kind::None;
}

}  // namespace

DurationShape scan_duration(std::u16string_view text, char16_t decimal_separator) noexcept {
    DurationShape shape;  // built in place: this runs for every value that is not a number
    shape.kind = scan_into(text, decimal_separator, shape);
    return shape;
}

}  // namespace tolven::io::text::typedetection
