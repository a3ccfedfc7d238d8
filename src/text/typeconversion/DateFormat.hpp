#pragma once
// A date format given by hand for one column, in strftime's letters: "%d/%m/%Y", "%Y%m%d %H:%M".

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/typeconversion/LocaleDateData.hpp"
#include "text/typeconversion/parse_datetime.hpp"

namespace tolven::io::text::typeconversion {

// Directives: %Y four-digit year; %y two-digit year (69 to 99 in the 1900s, 00 to 68 in the 2000s);
// %m month number; %b, %B or %h month name (the locale's or English, short or long, a "." may follow);
// %d or %e day; %a or %A weekday name (not checked against the date); %H hour 0 to 23; %I hour 1 to 12,
// with %p the AM/PM marker; %M minute; %S second, optionally followed by a fraction after "." or ",";
// %z zone: "Z", "+hh", "+hhmm" or "+hh:mm"; %F is %Y-%m-%d, %T is %H:%M:%S; %% a percent sign.
// Numbers take one or two digits (the year four, %y two). A blank matches one or more blanks; any
// other character matches itself, letters without regard to case.
class DateFormat {
public:
    // The compiled format; nullopt with the reason in reason when format is not usable (an unknown
    // directive, no year, month or day, %I without %p). format is UTF-8. Throws std::bad_alloc.
    static std::optional<DateFormat> compile(std::string_view format, std::string& reason);

    // The date text (trimmed) holds in this format, with all of it used and every field in range;
    // nullopt otherwise. Never throws.
    std::optional<DateTimeParts> parse(std::u16string_view text, const LocaleDateData& locale) const noexcept;

private:
    enum class Field : unsigned char {
        Year, ShortYear, Month, MonthName, Day, Weekday, Hour, Hour12, Minute, Second, DayPeriod, Zone, Literal, Space
    };
    struct Item {
        Field field;
        char16_t literal;  // folded; Literal only
    };
    std::vector<Item> items_;
};

}  // namespace tolven::io::text::typeconversion
