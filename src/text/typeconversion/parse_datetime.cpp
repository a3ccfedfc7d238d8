#include "text/typeconversion/parse_datetime.hpp"

#include "text/typeconversion/fold_case.hpp"

namespace tolven::io::text::typeconversion {

namespace {

bool is_digit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

class Cursor {
public:
    explicit Cursor(std::u16string_view text) noexcept : text_(text) {}

    bool at_end() const noexcept { return pos_ == text_.size(); }
    char16_t peek() const noexcept { return at_end() ? u'\0' : text_[pos_]; }
    std::u16string_view rest() const noexcept { return text_.substr(pos_); }
    std::size_t position() const noexcept { return pos_; }
    void reset(std::size_t position) noexcept { pos_ = position; }
    void advance(std::size_t n) noexcept { pos_ += n; }

    bool consume(char16_t c) noexcept {
        if (peek() != c) return false;
        ++pos_;
        return true;
    }
    bool skip_spaces() noexcept {
        const std::size_t start = pos_;
        while (!at_end() && is_date_space(text_[pos_])) ++pos_;
        return pos_ != start;
    }
    // Reads min to max digits and fails (-1, nothing consumed) when fewer are there or, unless
    // more_may_follow, more follow.
    int number(std::size_t min, std::size_t max, bool more_may_follow = false) noexcept {
        const std::size_t start = pos_;
        int value = 0;
        while (!at_end() && pos_ - start < max && is_digit(peek())) value = value * 10 + (text_[pos_++] - u'0');
        if (pos_ - start < min || (!more_may_follow && is_digit(peek()))) {
            pos_ = start;
            return -1;
        }
        return value;
    }
    std::u16string_view digits() noexcept {
        const std::size_t start = pos_;
        while (!at_end() && is_digit(peek())) ++pos_;
        return text_.substr(start, pos_ - start);
    }

private:
    std::u16string_view text_;
    std::size_t pos_ = 0;
};

struct ZoneName {
    std::u16string_view name;
    bool universal;      // may carry an offset of its own: "GMT+02:00"
    int offset_minutes;  // for the others
};
// "UTC" before "UT", which is its prefix.
constexpr ZoneName zone_names[] = {
    {u"UTC", true, 0},     {u"GMT", true, 0},     {u"UT", true, 0},      {u"EST", false, -300},
    {u"EDT", false, -240}, {u"CST", false, -360}, {u"CDT", false, -300}, {u"MST", false, -420},
    {u"MDT", false, -360}, {u"PST", false, -480}, {u"PDT", false, -420},
};

// "+hh", "+hhmm" or "+hh:mm"; the result in minutes east of UTC.
bool parse_offset(Cursor& c, int& minutes) noexcept {
    const std::size_t start = c.position();
    const char16_t sign = c.peek();
    if (sign != u'+' && sign != u'-') return false;
    c.advance(1);
    const int hours = c.number(2, 2, true);
    int mins = 0;
    if (hours >= 0 && (c.consume(u':') || is_digit(c.peek()))) mins = c.number(2, 2);
    if (hours < 0 || hours > 23 || mins < 0 || mins > 59) {
        c.reset(start);
        return false;
    }
    minutes = (sign == u'-' ? -1 : 1) * (hours * 60 + mins);
    return true;
}

bool parse_zone(Cursor& c, DateTimeParts& parts) noexcept {
    if (c.consume(u'Z')) {
        parts.zone = DateTimeParts::Zone::Utc;
        return true;
    }
    int minutes = 0;
    if (parse_offset(c, minutes)) {
        parts.zone = DateTimeParts::Zone::Offset;
        parts.offset_minutes = minutes;
        return true;
    }
    for (const ZoneName& zone : zone_names) {
        if (!c.rest().starts_with(zone.name)) continue;
        c.advance(zone.name.size());
        if (zone.universal && !parse_offset(c, minutes)) {
            parts.zone = DateTimeParts::Zone::Utc;
        } else {
            parts.zone = DateTimeParts::Zone::Offset;
            parts.offset_minutes = zone.universal ? minutes : zone.offset_minutes;
        }
        return true;
    }
    return false;
}

// An abbreviated name may end in "." ("janv.", "Sept."), unless the pattern itself has a "." there.
void skip_abbreviation_dot(Cursor& c, const std::vector<DateItem>& items, std::size_t k) noexcept {
    const bool pattern_dot = k + 1 < items.size() && items[k + 1].kind == DateItemKind::Literal &&
                             items[k + 1].literal.front() == u'.';
    if (!pattern_dot) c.consume(u'.');
}

bool match_date(const DatePattern& pattern, const LocaleDateData& locale, Cursor& c, DateTimeParts& parts) noexcept {
    const auto& items = pattern.items;
    for (std::size_t k = 0; k < items.size(); ++k) {
        std::size_t length = 0;
        switch (items[k].kind) {
            case DateItemKind::Year:
                if ((parts.year = c.number(4, 4)) < 0) return false;
                break;
            case DateItemKind::MonthNumber:
                if ((parts.month = c.number(1, 2)) < 0) return false;
                break;
            case DateItemKind::Day:
                if ((parts.day = c.number(1, 2)) < 0) return false;
                break;
            case DateItemKind::MonthName:
                if ((parts.month = locale.match_month(c.rest(), length)) == 0) return false;
                c.advance(length);
                skip_abbreviation_dot(c, items, k);
                break;
            case DateItemKind::Weekday:
                if (!locale.match_weekday(c.rest(), length)) return false;
                c.advance(length);
                skip_abbreviation_dot(c, items, k);
                break;
            case DateItemKind::Literal:
                if (!starts_with_folded(c.rest(), items[k].literal)) return false;
                c.advance(items[k].literal.size());
                break;
            case DateItemKind::Space:
                if (!c.skip_spaces()) return false;
                break;
        }
    }
    return true;
}

bool parse_time(Cursor& c, const LocaleDateData& locale, DateTimeParts& parts) noexcept {
    int hour = c.number(1, 2);
    if (hour < 0 || !c.consume(u':')) return false;
    if ((parts.minute = c.number(2, 2)) < 0) return false;
    if (c.consume(u':')) {
        if ((parts.second = c.number(2, 2)) < 0) return false;
        if (c.peek() == u'.' || c.peek() == u',') {
            c.advance(1);
            parts.fraction = c.digits();
            if (parts.fraction.empty()) return false;
        }
    }
    std::size_t mark = c.position();
    c.skip_spaces();
    std::size_t length = 0;
    const int period = locale.match_day_period(c.rest(), length);
    if (period >= 0) {
        if (hour < 1 || hour > 12) return false;
        hour = hour % 12 + (period == 1 ? 12 : 0);
        c.advance(length);
    } else {
        c.reset(mark);
    }
    parts.hour = hour;
    parts.has_time = true;

    mark = c.position();
    c.skip_spaces();
    if (!parse_zone(c, parts)) c.reset(mark);
    return true;
}

// Whatever follows the date: nothing, or a time.
bool parse_time_suffix(Cursor& c, bool iso, const LocaleDateData& locale, DateTimeParts& parts) noexcept {
    if (c.at_end()) return true;
    if (!(iso && c.consume(u'T'))) {
        c.consume(u',');
        if (!c.skip_spaces()) return false;
    }
    return parse_time(c, locale, parts) && c.at_end();
}

bool is_leap_year(int year) noexcept { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int days_in_month(int year, int month) noexcept {
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && is_leap_year(year) ? 29 : days[month - 1];
}

bool in_range(const DateTimeParts& parts) noexcept {
    if (parts.month < 1 || parts.month > 12) return false;
    if (parts.day < 1 || parts.day > days_in_month(parts.year, parts.month)) return false;
    return parts.hour <= 23 && parts.minute <= 59 && parts.second <= 59;
}

}  // namespace

namespace {

std::optional<DateTimeParts> parse_with(std::u16string_view text, const LocaleDateData& locale,
                                        std::optional<DateOrder> only) noexcept {
    for (const DatePattern& pattern : locale.patterns()) {
        if (only) {
            const auto order = numeric_order(pattern);
            if (order && *order != *only) continue;
        }
        Cursor c(text);
        DateTimeParts parts;
        if (match_date(pattern, locale, c, parts) && parse_time_suffix(c, pattern.iso, locale, parts) &&
            in_range(parts)) {
            return parts;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<DateTimeParts> parse_datetime(std::u16string_view text, const LocaleDateData& locale) noexcept {
    return parse_with(text, locale, std::nullopt);
}

std::optional<DateTimeParts> parse_datetime(std::u16string_view text, const LocaleDateData& locale,
                                            DateOrder order) noexcept {
    return parse_with(text, locale, order);
}

bool is_valid_date_time(const DateTimeParts& parts) noexcept { return in_range(parts); }

}  // namespace tolven::io::text::typeconversion
