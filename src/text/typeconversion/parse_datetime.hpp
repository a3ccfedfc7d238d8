#pragma once
// Reads a date, with an optional time of day and zone, into its fields.

#include <optional>
#include <string_view>

#include "text/typeconversion/DateOrder.hpp"
#include "text/typeconversion/LocaleDateData.hpp"

namespace tolven::io::text::typeconversion {

struct DateTimeParts {
    enum class Zone : unsigned char { None, Utc, Offset };

    int year = 0;
    int month = 0;
    int day = 0;
    bool has_time = false;
    int hour = 0;  // 0 to 23, after any AM/PM marker is applied
    int minute = 0;
    int second = 0;
    std::u16string_view fraction;  // the digits after the seconds as written; points into the parsed text
    Zone zone = Zone::None;
    int offset_minutes = 0;  // east of UTC, for Zone::Offset
};

// Reads text (already trimmed) with the locale's date forms, tried in order; each may be followed by
// a time "H:mm[:ss[.fraction]]" (after "T" for ISO dates, otherwise after blanks or ", "), an AM/PM
// marker and a zone ("Z", "+02:00", "+0200", "+02", "GMT", "UTC", "UT", or a US zone such as "EST").
// A form whose fields are out of range (month 1 to 12, the day within its month, 29 February only in
// leap years, hour 0 to 23 or 1 to 12 with a marker, minute and second 0 to 59) does not accept the
// text. nullopt when no form accepts it. Never throws.
std::optional<DateTimeParts> parse_datetime(std::u16string_view text, const LocaleDateData& locale) noexcept;
// The same, trying of the forms that write day and month as numbers only those of one order, so a
// whole column reads "03/04/2024" alike. Never throws.
std::optional<DateTimeParts> parse_datetime(std::u16string_view text, const LocaleDateData& locale,
                                            DateOrder order) noexcept;

// True when the fields are in the ranges above. Never throws.
bool is_valid_date_time(const DateTimeParts& parts) noexcept;

}  // namespace tolven::io::text::typeconversion
