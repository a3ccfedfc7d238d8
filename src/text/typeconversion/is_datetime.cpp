#include "text/typeconversion/is_datetime.hpp"

#include <algorithm>

#include "text/typeconversion/LocaleDateData.hpp"
#include "text/typeconversion/parse_datetime.hpp"

namespace tolven::io::text::typeconversion {

bool is_datetime(const textio::Field& field, const std::u16string& locale) {
    // Every date form holds a four-digit year and a day, so text with fewer than five digits ("w1",
    // "3.5", words) is turned away without trying the locale's patterns.
    constexpr std::ptrdiff_t kFewestDigits = 5;
    const std::u16string_view text = field.text();
    if (std::count_if(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; }) < kFewestDigits)
        return false;
    return parse_datetime(text, LocaleDateData::get(locale)).has_value();
}

}  // namespace tolven::io::text::typeconversion
