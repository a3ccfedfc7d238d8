#include "text/typeconversion/DateFormat.hpp"

#include <algorithm>

#include "host/utf.hpp"
#include "text/typeconversion/fold_case.hpp"

namespace tolven::io::text::typeconversion {

namespace {

bool is_digit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

// min to max digits at text[i], greedily; -1 when fewer than min.
int read_number(std::u16string_view text, std::size_t& i, std::size_t min, std::size_t max) noexcept {
    const std::size_t start = i;
    int value = 0;
    while (i < text.size() && i - start < max && is_digit(text[i])) value = value * 10 + (text[i++] - u'0');
    return i - start < min ? -1 : value;
}

// "Z", "+hh", "+hhmm" or "+hh:mm"; minutes east of UTC.
bool read_zone(std::u16string_view text, std::size_t& i, DateTimeParts& parts) noexcept {
    if (i < text.size() && text[i] == u'Z') {
        ++i;
        parts.zone = DateTimeParts::Zone::Utc;
        return true;
    }
    if (i >= text.size() || (text[i] != u'+' && text[i] != u'-')) return false;
    const int sign = text[i++] == u'-' ? -1 : 1;
    const int hours = read_number(text, i, 2, 2);
    int minutes = 0;
    if (i < text.size() && text[i] == u':') ++i;
    if (i < text.size() && is_digit(text[i])) minutes = read_number(text, i, 2, 2);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return false;
    parts.zone = DateTimeParts::Zone::Offset;
    parts.offset_minutes = sign * (hours * 60 + minutes);
    return true;
}

}  // namespace

std::optional<DateFormat> DateFormat::compile(std::string_view format, std::string& reason) {
    const std::u16string text = fl::i18n::utf8_to_ustring(format);
    DateFormat compiled;
    auto& items = compiled.items_;
    const auto add = [&items](Field field) { items.push_back({field, 0}); };
    const auto literal = [&items](char16_t c) {
        if (is_date_space(c)) {
            if (items.empty() || items.back().field != Field::Space) items.push_back({Field::Space, 0});
        } else {
            items.push_back({Field::Literal, fold_unit(c)});
        }
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'%') {
            literal(text[i]);
            continue;
        }
        if (++i == text.size()) {
            reason = "it ends in a lone '%'";
            return std::nullopt;
        }
        switch (text[i]) {
            case u'Y': add(Field::Year); break;
            case u'y': add(Field::ShortYear); break;
            case u'm': add(Field::Month); break;
            case u'b':
            case u'B':
            case u'h': add(Field::MonthName); break;
            case u'd':
            case u'e': add(Field::Day); break;
            case u'a':
            case u'A': add(Field::Weekday); break;
            case u'H': add(Field::Hour); break;
            case u'I': add(Field::Hour12); break;
            case u'M': add(Field::Minute); break;
            case u'S': add(Field::Second); break;
            case u'p': add(Field::DayPeriod); break;
            case u'z': add(Field::Zone); break;
            case u'F':
                add(Field::Year);
                literal(u'-');
                add(Field::Month);
                literal(u'-');
                add(Field::Day);
                break;
            case u'T':
                add(Field::Hour);
                literal(u':');
                add(Field::Minute);
                literal(u':');
                add(Field::Second);
                break;
            case u'%': literal(u'%'); break;
            default:
                reason = "'%" + fl::i18n::ustring_to_utf8(std::u16string(1, text[i])) +
                         "' is not a directive (use %Y %y %m %b %d %a %H %I %M %S %p %z %F %T %%)";
                return std::nullopt;
        }
    }
    const auto has = [&items](std::initializer_list<Field> fields) {
        return std::any_of(items.begin(), items.end(), [&](const Item& item) {
            return std::find(fields.begin(), fields.end(), item.field) != fields.end();
        });
    };
    if (!has({Field::Year, Field::ShortYear}) || !has({Field::Month, Field::MonthName}) || !has({Field::Day})) {
        reason = "it needs a year (%Y or %y), a month (%m or %b) and a day (%d)";
        return std::nullopt;
    }
    if (has({Field::Hour12}) != has({Field::DayPeriod})) {
        reason = "%I and %p go together";
        return std::nullopt;
    }
    return compiled;
}

std::optional<DateTimeParts> DateFormat::parse(std::u16string_view text, const LocaleDateData& locale) const noexcept {
    DateTimeParts parts;
    int period = -1;
    std::size_t i = 0;
    for (std::size_t k = 0; k < items_.size(); ++k) {
        const Item& item = items_[k];
        const std::u16string_view rest = text.substr(std::min(i, text.size()));
        std::size_t length = 0;
        int value = 0;
        switch (item.field) {
            case Field::Year: value = parts.year = read_number(text, i, 4, 4); break;
            case Field::ShortYear:
                value = read_number(text, i, 2, 2);
                parts.year = value < 0 ? -1 : value + (value < 69 ? 2000 : 1900);
                break;
            case Field::Month: value = parts.month = read_number(text, i, 1, 2); break;
            case Field::Day: value = parts.day = read_number(text, i, 1, 2); break;
            case Field::Hour:
            case Field::Hour12:
                value = parts.hour = read_number(text, i, 1, 2);
                parts.has_time = true;
                break;
            case Field::Minute:
                value = parts.minute = read_number(text, i, 1, 2);
                parts.has_time = true;
                break;
            case Field::Second:
                value = parts.second = read_number(text, i, 1, 2);
                if (value >= 0 && i + 1 < text.size() && (text[i] == u'.' || text[i] == u',') && is_digit(text[i + 1])) {
                    const std::size_t start = ++i;
                    while (i < text.size() && is_digit(text[i])) ++i;
                    parts.fraction = text.substr(start, i - start);
                }
                parts.has_time = true;
                break;
            case Field::MonthName:
            case Field::Weekday: {
                const bool month = item.field == Field::MonthName;
                value = month ? locale.match_month(rest, length) : (locale.match_weekday(rest, length) ? 1 : 0);
                if (value == 0) return std::nullopt;
                i += length;
                const bool dot_follows = k + 1 < items_.size() && items_[k + 1].field == Field::Literal &&
                                         items_[k + 1].literal == u'.';
                if (!dot_follows && i < text.size() && text[i] == u'.') ++i;
                if (month) parts.month = value;
                break;
            }
            case Field::DayPeriod:
                period = locale.match_day_period(rest, length);
                if (period < 0) return std::nullopt;
                i += length;
                break;
            case Field::Zone:
                if (!read_zone(text, i, parts)) return std::nullopt;
                break;
            case Field::Literal:
                if (i >= text.size() || fold_unit(text[i]) != item.literal) return std::nullopt;
                ++i;
                break;
            case Field::Space: {
                const std::size_t start = i;
                while (i < text.size() && is_date_space(text[i])) ++i;
                if (i == start) return std::nullopt;
                break;
            }
        }
        if (value < 0) return std::nullopt;
    }
    if (i != text.size()) return std::nullopt;
    if (period >= 0) {
        if (parts.hour < 1 || parts.hour > 12) return std::nullopt;
        parts.hour = parts.hour % 12 + (period == 1 ? 12 : 0);
    }
    if (!is_valid_date_time(parts)) return std::nullopt;
    return parts;
}

}  // namespace tolven::io::text::typeconversion
