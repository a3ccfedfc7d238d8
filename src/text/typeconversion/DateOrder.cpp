#include "text/typeconversion/DateOrder.hpp"

#include "text/typeconversion/LocaleDateData.hpp"
#include "text/typeconversion/parse_datetime.hpp"

namespace tolven::io::text::typeconversion {

std::optional<DateOrder> numeric_order(const DatePattern& pattern) noexcept {
    // Year-first forms ("y/M/d") are read the same way everywhere; named months are never ambiguous.
    std::optional<DateOrder> order;
    bool seen_field = false;
    for (const DateItem& item : pattern.items) {
        switch (item.kind) {
            case DateItemKind::MonthName: return std::nullopt;
            case DateItemKind::Year:
                if (!seen_field) return std::nullopt;
                break;
            case DateItemKind::Day:
                if (!seen_field) order = DateOrder::DayFirst;
                break;
            case DateItemKind::MonthNumber:
                if (!seen_field) order = DateOrder::MonthFirst;
                break;
            default: continue;
        }
        seen_field = true;
    }
    return order;
}

DateOrder locale_date_order(const std::u16string& locale) {
    if (locale.empty() || locale == u"en_US" || locale == u"en-US") return DateOrder::MonthFirst;
    for (const std::u16string_view day_first : {u"en_GB", u"en-GB", u"de_DE", u"de-DE", u"fr_FR", u"fr-FR"})
        if (locale == day_first) return DateOrder::DayFirst;
    return LocaleDateData::get(locale).day_first() ? DateOrder::DayFirst : DateOrder::MonthFirst;
}

std::optional<DateOrder> date_order_evidence(std::u16string_view text, const LocaleDateData& locale) noexcept {
    const auto day_first = parse_datetime(text, locale, DateOrder::DayFirst);
    const auto month_first = parse_datetime(text, locale, DateOrder::MonthFirst);
    if (day_first && !month_first) return DateOrder::DayFirst;
    if (month_first && !day_first) return DateOrder::MonthFirst;
    return std::nullopt;
}

}  // namespace tolven::io::text::typeconversion
