#pragma once
// A date form as a sequence of fields and literals, compiled from the pattern letters ICU uses
// ("d MMM y", "EEEE, MMMM d, y", "d 'de' MMMM 'de' y"), so the fixed forms and each locale's own
// patterns are matched by the same code.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::io::text::typeconversion {

enum class DateItemKind : unsigned char {
    Year,         // four digits
    MonthNumber,  // one or two digits
    MonthName,    // a month name of the locale or English, optionally followed by "."
    Day,          // one or two digits
    Weekday,      // a weekday name of the locale or English, optionally followed by "."; not checked against the date
    Literal,      // fixed text, compared without regard to case
    Space,        // one or more blanks
};

struct DateItem {
    DateItemKind kind;
    std::u16string literal;  // case-folded; only for Literal
    bool operator==(const DateItem&) const = default;
};

struct DatePattern {
    std::vector<DateItem> items;
    bool iso = false;  // a time may follow after "T" as well as after blanks
    bool operator==(const DatePattern&) const = default;
};

// Compiles an ICU-style date pattern. Letters y (any count but two), M and L, d, E (and c, e with three
// or more letters) become fields; quoted text and other characters become literals; blanks become Space.
// Returns nullopt for patterns with fields the matcher cannot check (two-digit years, eras, week
// numbers, day of year...) and for patterns lacking a year, a month or a day. Throws std::bad_alloc.
std::optional<DatePattern> compile_date_pattern(std::u16string_view pattern);

}  // namespace tolven::io::text::typeconversion
