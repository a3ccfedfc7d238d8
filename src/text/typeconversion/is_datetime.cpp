#include "text/typeconversion/is_datetime.hpp"

#include <algorithm>

#include "text/typeconversion/LocaleDateData.hpp"
#include "text/typeconversion/parse_datetime.hpp"

namespace tolven::io::text::typeconversion {

bool is_datetime(const textio::Field& field, const std::u16string& locale) {
    // Every date form holds digits (day and year), so words are turned away without the locale's data.
    const std::u16string_view text = field.text();
    if (std::none_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; })) return false;
    return parse_datetime(text, LocaleDateData::get(locale)).has_value();
}

}  // namespace tolven::io::text::typeconversion
