#include "cli/OptionChecks.hpp"

#include <unicode/locid.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <set>

namespace tolven::cli {

namespace {

// The languages ICU has locale data for; a locale of any other language would read dates with the
// root locale's names, silently.
const std::set<std::string>& languages_with_data() {
    static const std::set<std::string> languages = [] {
        std::set<std::string> found;
        std::int32_t count = 0;
        const icu::Locale* available = icu::Locale::getAvailableLocales(count);
        for (std::int32_t i = 0; i < count; ++i) found.insert(available[i].getLanguage());
        return found;
    }();
    return languages;
}

// Read as the date reader reads it: a "-" makes it a language tag, otherwise an ICU locale name.
icu::Locale to_locale(const std::string& name) {
    if (name.find('-') != std::string::npos) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale tagged = icu::Locale::forLanguageTag(name, status);
        if (U_SUCCESS(status)) return tagged;
        icu::Locale bogus;
        bogus.setToBogus();
        return bogus;
    }
    return icu::Locale::createCanonical(name.c_str());
}

}  // namespace

std::string check_count(const std::string& value) {
    std::uint64_t number = 0;
    const char* end = value.data() + value.size();
    const bool digits = !value.empty() && std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (digits && std::from_chars(value.data(), end, number).ec == std::errc{}) return "";
    return "must be a whole number of at least 0, not '" + value + "'";
}

std::string check_date_locale(const std::string& value) {
    if (value.empty()) return "";
    const icu::Locale locale = to_locale(value);
    const bool known = !locale.isBogus() && languages_with_data().count(locale.getLanguage()) > 0 &&
                       (locale.getCountry()[0] == '\0' || locale.getISO3Country()[0] != '\0');
    if (known) return "";
    return "'" + value + "' is not a locale ICU knows (a language and a country, such as en_US, de_DE or fr-FR)";
}

std::optional<std::uint64_t> parse_size(std::string_view text) {
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') ++digits;
    std::uint64_t number = 0;
    if (digits == 0 || std::from_chars(text.data(), text.data() + digits, number).ec != std::errc{}) return std::nullopt;
    std::string unit;
    for (const char c : text.substr(digits)) unit.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    int shift = -1;
    if (unit.empty() || unit == "b") shift = 0;
    else if (unit == "k" || unit == "kb" || unit == "kib") shift = 10;
    else if (unit == "m" || unit == "mb" || unit == "mib") shift = 20;
    else if (unit == "g" || unit == "gb" || unit == "gib") shift = 30;
    if (shift < 0 || number == 0 || number > (UINT64_MAX >> shift)) return std::nullopt;
    return number << shift;
}

CLI::Validator Count() { return CLI::Validator(check_count, ""); }

CLI::Validator DateLocale() { return CLI::Validator(check_date_locale, ""); }

CLI::Validator Size() {
    return CLI::Validator(
        [](std::string& value) {
            const auto bytes = parse_size(value);
            if (!bytes) return "must be a size of at least 1 byte, such as 65536, 64KiB or 2MiB, not '" + value + "'";
            value = std::to_string(*bytes);
            return std::string();
        },
        "");
}

}  // namespace tolven::cli
