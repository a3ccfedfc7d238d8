#pragma once
// What a locale contributes to reading dates: month and weekday names, AM/PM markers, the order of
// day and month in numeric dates, and the date forms tried, in order. Loaded from ICU once per
// locale and kept for the life of the process.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/typeconversion/DatePattern.hpp"

namespace tolven::io::text::typeconversion {

class LocaleDateData {
public:
    // Loads the data of a locale: "de_DE", "fr-FR"; "" means en_US. An unknown locale gets ICU's root
    // data. Throws std::bad_alloc.
    explicit LocaleDateData(std::u16string_view locale);

    // The cached data of a locale, loaded on first use. Safe to call from several threads; the
    // reference stays valid until the process ends. Throws std::bad_alloc.
    static const LocaleDateData& get(const std::u16string& locale);

    // The date forms in the order they are tried; the first that accepts a text decides how it reads.
    const std::vector<DatePattern>& patterns() const noexcept { return patterns_; }
    // True when numeric dates put the day before the month ("05/01/2024" is 5 January).
    bool day_first() const noexcept { return day_first_; }

    // The month (1 to 12) named at the start of text, with the length of the name in length; 0 when no
    // name matches. The locale's names win over English ones; the longest name wins. Never throws.
    int match_month(std::u16string_view text, std::size_t& length) const noexcept;
    // True when a weekday is named at the start of text; its length goes to length. Never throws.
    bool match_weekday(std::u16string_view text, std::size_t& length) const noexcept;
    // 0 for a morning marker ("AM") at the start of text, 1 for an afternoon marker ("PM"), -1 for
    // none; the marker's length goes to length. Never throws.
    int match_day_period(std::u16string_view text, std::size_t& length) const noexcept;

    struct Name {
        std::u16string folded;  // case-folded, without a trailing "."
        int value;
    };

private:
    std::vector<Name> months_;
    std::vector<Name> weekdays_;
    std::vector<Name> day_periods_;
    std::vector<DatePattern> patterns_;
    bool day_first_ = false;
};

}  // namespace tolven::io::text::typeconversion
