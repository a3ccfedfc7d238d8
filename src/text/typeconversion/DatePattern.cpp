#include "text/typeconversion/DatePattern.hpp"

#include <algorithm>

#include "text/typeconversion/fold_case.hpp"

namespace tolven::io::text::typeconversion {

namespace {

bool is_ascii_letter(char16_t c) noexcept { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

// The field a run of count letters stands for; nullopt when unsupported.
std::optional<DateItemKind> field_of(char16_t letter, std::size_t count) noexcept {
    switch (letter) {
        case u'y':
            // "yy" means a two-digit year, whose century would be a guess.
            if (count == 2) return std::nullopt;
            return DateItemKind::Year;
        case u'M':
        case u'L': return count <= 2 ? DateItemKind::MonthNumber : DateItemKind::MonthName;
        case u'd':
            if (count > 2) return std::nullopt;
            return DateItemKind::Day;
        case u'E': return DateItemKind::Weekday;
        case u'c':
        case u'e':
            // One or two letters are a numeric day of week.
            if (count < 3) return std::nullopt;
            return DateItemKind::Weekday;
        default: return std::nullopt;
    }
}

class Builder {
public:
    void literal(char16_t c) {
        if (is_date_space(c)) {
            if (items_.empty() || items_.back().kind != DateItemKind::Space) items_.push_back({DateItemKind::Space, {}});
            return;
        }
        if (items_.empty() || items_.back().kind != DateItemKind::Literal) items_.push_back({DateItemKind::Literal, {}});
        items_.back().literal.push_back(fold_unit(c));
    }
    void field(DateItemKind kind) { items_.push_back({kind, {}}); }
    DatePattern finish() && { return DatePattern{std::move(items_), false}; }

private:
    std::vector<DateItem> items_;
};

}  // namespace

std::optional<DatePattern> compile_date_pattern(std::u16string_view pattern) {
    Builder builder;
    std::size_t i = 0;
    while (i < pattern.size()) {
        const char16_t c = pattern[i];
        if (c == u'\'') {
            // '' is a quote; 'text' is literal text in which '' again stands for a quote.
            if (i + 1 < pattern.size() && pattern[i + 1] == u'\'') {
                builder.literal(u'\'');
                i += 2;
                continue;
            }
            ++i;
            while (i < pattern.size()) {
                if (pattern[i] == u'\'') {
                    if (i + 1 < pattern.size() && pattern[i + 1] == u'\'') {
                        builder.literal(u'\'');
                        i += 2;
                        continue;
                    }
                    break;
                }
                builder.literal(pattern[i++]);
            }
            ++i;  // the closing quote (an unclosed quote runs to the end)
            continue;
        }
        if (!is_ascii_letter(c)) {
            builder.literal(c);
            ++i;
            continue;
        }
        std::size_t count = 0;
        while (i < pattern.size() && pattern[i] == c) {
            ++i;
            ++count;
        }
        const auto kind = field_of(c, count);
        if (!kind) return std::nullopt;
        builder.field(*kind);
    }
    DatePattern compiled = std::move(builder).finish();
    // Without all three of year, month and day a match would leave a field unchecked.
    const auto has = [&compiled](DateItemKind a, DateItemKind b) {
        return std::any_of(compiled.items.begin(), compiled.items.end(),
                           [&](const DateItem& item) { return item.kind == a || item.kind == b; });
    };
    if (!has(DateItemKind::Year, DateItemKind::Year) || !has(DateItemKind::Day, DateItemKind::Day) ||
        !has(DateItemKind::MonthNumber, DateItemKind::MonthName)) {
        return std::nullopt;
    }
    return compiled;
}

}  // namespace tolven::io::text::typeconversion
