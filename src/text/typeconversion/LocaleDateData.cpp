#include "text/typeconversion/LocaleDateData.hpp"

#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "text/typeconversion/fold_case.hpp"

namespace tolven::io::text::typeconversion {

namespace {

struct EnglishName {
    std::u16string_view folded;
    int value;
};

// English names are understood under every locale: feeds write RFC 1123 dates in English whatever the
// reader's locale, and machine-written documents mostly use English month names.
constexpr EnglishName english_months[] = {
    {u"january", 1}, {u"february", 2}, {u"march", 3}, {u"april", 4},   {u"may", 5},      {u"june", 6},
    {u"july", 7},    {u"august", 8},   {u"september", 9}, {u"october", 10}, {u"november", 11}, {u"december", 12},
    {u"jan", 1},     {u"feb", 2},      {u"mar", 3},   {u"apr", 4},      {u"jun", 6},      {u"jul", 7},
    {u"aug", 8},     {u"sep", 9},      {u"sept", 9},  {u"oct", 10},     {u"nov", 11},     {u"dec", 12},
};
constexpr EnglishName english_weekdays[] = {
    {u"sunday", 1}, {u"monday", 2}, {u"tuesday", 3}, {u"wednesday", 4}, {u"thursday", 5}, {u"friday", 6},
    {u"saturday", 7}, {u"sun", 1},  {u"mon", 2},     {u"tue", 3},       {u"tues", 3},      {u"wed", 4},
    {u"thu", 5},    {u"thurs", 5},  {u"fri", 6},     {u"sat", 7},
};
constexpr EnglishName english_day_periods[] = {{u"am", 0}, {u"pm", 1}, {u"a.m.", 0}, {u"p.m.", 1}};

// The fixed date forms, in the order tried. Year-first forms cannot be confused with anything; the
// numeric day-month forms are ambiguous and go in the locale's order; named months come last.
constexpr std::u16string_view iso_form = u"y-M-d";
constexpr std::u16string_view year_first_forms[] = {u"y/M/d", u"y.M.d"};
constexpr std::u16string_view day_month_forms[] = {u"d/M/y", u"d-M-y", u"d.M.y"};
constexpr std::u16string_view month_day_forms[] = {u"M/d/y", u"M-d-y", u"M.d.y"};
constexpr std::u16string_view named_month_forms[] = {
    u"d-MMM-y",       // 05-Mar-2024
    u"d MMMM y",      // 5 March 2024 (a month item takes short and long names alike)
    u"MMM d, y",      // Mar 5, 2024
    u"EEE, d MMM y",  // RFC 1123: Tue, 10 Jun 2003
};

std::u16string_view view(const icu::UnicodeString& s) {
    return {s.getBuffer(), static_cast<std::size_t>(s.length())};
}

icu::Locale icu_locale(std::u16string_view name) {
    std::string narrow;
    for (const char16_t c : name) narrow.push_back(c < 0x80 ? static_cast<char>(c) : '?');
    if (narrow.empty()) return icu::Locale("en_US");
    if (narrow.find('-') != std::string::npos) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale tagged = icu::Locale::forLanguageTag(narrow, status);
        if (U_SUCCESS(status) && !tagged.isBogus()) return tagged;
    }
    return icu::Locale::createCanonical(narrow.c_str());
}

void add_name(std::vector<LocaleDateData::Name>& names, std::u16string_view name, int value) {
    while (!name.empty() && (name.back() == u'.' || is_date_space(name.back()))) name.remove_suffix(1);
    if (name.empty()) return;
    std::u16string folded = fold(name);
    // Format and stand-alone forms mostly coincide; one copy of each name is enough.
    const auto same = [&](const LocaleDateData::Name& known) { return known.folded == folded && known.value == value; };
    if (std::none_of(names.begin(), names.end(), same)) names.push_back({std::move(folded), value});
}

// Longest match among names at the start of text: "Juni" must not be read as "Jun" followed by "i".
template <typename Names>
int longest_match(std::u16string_view text, const Names& names, std::size_t& length) noexcept {
    length = 0;
    if (text.empty()) return -1;
    // Most names fail on their first character; folding it once keeps the scan cheap.
    const char16_t first = fold_unit(text.front());
    int value = 0;
    std::size_t best = 0;
    for (const auto& name : names) {
        const std::u16string_view folded = name.folded;
        if (folded.front() == first && folded.size() > best && starts_with_folded(text, folded)) {
            best = folded.size();
            value = name.value;
        }
    }
    length = best;
    return best == 0 ? -1 : value;
}

template <typename Names, typename English>
int match_name(std::u16string_view text, const Names& names, const English& english, std::size_t& length) noexcept {
    const int value = longest_match(text, names, length);
    return value >= 0 ? value : longest_match(text, english, length);
}

std::u16string icu_date_pattern(icu::DateFormat::EStyle style, const icu::Locale& locale) {
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateInstance(style, locale));
    if (!format || format->getDynamicClassID() != icu::SimpleDateFormat::getStaticClassID()) return {};
    icu::UnicodeString pattern;
    static_cast<icu::SimpleDateFormat*>(format.get())->toPattern(pattern);
    return std::u16string(view(pattern));
}

// Whether a pattern puts d before M, ignoring quoted text.
bool puts_day_first(std::u16string_view pattern) {
    bool quoted = false;
    for (const char16_t c : pattern) {
        if (c == u'\'') quoted = !quoted;
        if (quoted) continue;
        if (c == u'd') return true;
        if (c == u'M' || c == u'L') return false;
    }
    return false;
}

}  // namespace

LocaleDateData::LocaleDateData(std::u16string_view locale) {
    const icu::Locale loc = icu_locale(locale);

    UErrorCode status = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(loc, status);
    if (U_SUCCESS(status)) {
        for (const auto context : {icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::STANDALONE}) {
            for (const auto width : {icu::DateFormatSymbols::WIDE, icu::DateFormatSymbols::ABBREVIATED}) {
                int32_t count = 0;
                const icu::UnicodeString* months = symbols.getMonths(count, context, width);
                for (int32_t i = 0; i < count && i < 12; ++i) add_name(months_, view(months[i]), i + 1);
                // Weekdays are indexed from 1 (Sunday); element 0 is empty.
                const icu::UnicodeString* weekdays = symbols.getWeekdays(count, context, width);
                for (int32_t i = 1; i < count && i <= 7; ++i) add_name(weekdays_, view(weekdays[i]), i);
            }
        }
        int32_t count = 0;
        const icu::UnicodeString* periods = symbols.getAmPmStrings(count);
        for (int32_t i = 0; i < count && i < 2; ++i) {
            // Markers keep their dots ("a.m."); only case is folded.
            const std::u16string_view marker = view(periods[i]);
            if (!marker.empty()) day_periods_.push_back({fold(marker), i});
        }
    }

    const std::u16string short_pattern = icu_date_pattern(icu::DateFormat::kShort, loc);
    day_first_ = puts_day_first(short_pattern);

    const auto add_pattern = [this](std::u16string_view text, bool iso) {
        auto pattern = compile_date_pattern(text);
        if (!pattern) return;
        pattern->iso = iso;
        if (std::find(patterns_.begin(), patterns_.end(), *pattern) == patterns_.end()) {
            patterns_.push_back(std::move(*pattern));
        }
    };
    add_pattern(iso_form, true);
    for (const auto form : year_first_forms) add_pattern(form, false);
    for (const auto form : day_first_ ? day_month_forms : month_day_forms) add_pattern(form, false);
    for (const auto form : day_first_ ? month_day_forms : day_month_forms) add_pattern(form, false);
    for (const auto form : named_month_forms) add_pattern(form, false);
    // The locale's own forms, such as "d. MMMM y" in German, after the fixed ones.
    for (const auto style : {icu::DateFormat::kMedium, icu::DateFormat::kLong, icu::DateFormat::kFull}) {
        add_pattern(icu_date_pattern(style, loc), false);
    }
    add_pattern(short_pattern, false);
}

const LocaleDateData& LocaleDateData::get(const std::u16string& locale) {
    // Values of one variable share a locale, so the last one used is remembered per thread and the
    // lock is taken only when the locale changes.
    thread_local std::u16string last_locale;
    thread_local const LocaleDateData* last = nullptr;
    if (last != nullptr && last_locale == locale) return *last;

    static std::mutex mutex;
    static std::unordered_map<std::u16string, std::unique_ptr<const LocaleDateData>> cache;
    const LocaleDateData* data = nullptr;
    {
        const std::lock_guard lock(mutex);
        auto& slot = cache[locale];
        if (!slot) slot = std::make_unique<const LocaleDateData>(locale);
        data = slot.get();
    }
    last_locale = locale;
    last = data;
    return *data;
}

int LocaleDateData::match_month(std::u16string_view text, std::size_t& length) const noexcept {
    const int month = match_name(text, months_, english_months, length);
    return month < 0 ? 0 : month;
}

bool LocaleDateData::match_weekday(std::u16string_view text, std::size_t& length) const noexcept {
    return match_name(text, weekdays_, english_weekdays, length) >= 0;
}

int LocaleDateData::match_day_period(std::u16string_view text, std::size_t& length) const noexcept {
    return match_name(text, day_periods_, english_day_periods, length);
}

}  // namespace tolven::io::text::typeconversion
