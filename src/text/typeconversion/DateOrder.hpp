#pragma once
// The order of day and month in numeric dates ("03/04/2024"), decided once for a whole column.

#include <optional>
#include <string>
#include <string_view>

#include "text/typeconversion/DatePattern.hpp"

namespace tolven::io::text::typeconversion {

class LocaleDateData;

enum class DateOrder : unsigned char { DayFirst, MonthFirst };

// The order of a form that writes day and month as numbers, one of them first; nullopt for any other
// form (year first, or a month name).
std::optional<DateOrder> numeric_order(const DatePattern& pattern) noexcept;

// The order a locale reads numeric dates in when nothing else tells: month first for en_US and "";
// day first for en_GB, de_DE and fr_FR; for other locales that of ICU's short date pattern (day
// first when it puts d before M), month first when it has none. Throws std::bad_alloc.
DateOrder locale_date_order(const std::u16string& locale);

// What a value tells of its column's order: DayFirst when it reads as a date only day first
// ("13/03/2024"), MonthFirst when only month first ("03/13/2024"), nullopt when both readings agree
// or neither reads. Never throws.
std::optional<DateOrder> date_order_evidence(std::u16string_view text, const LocaleDateData& locale) noexcept;

}  // namespace tolven::io::text::typeconversion
