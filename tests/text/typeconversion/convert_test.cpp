#include "text/typeconversion/convert.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "host/utf.hpp"

namespace tolven::io::text::typeconversion {
namespace {

using typedetection::TypeAnalyzerOptions;

TypeAnalyzerOptions with_locale(std::u16string locale) {
    TypeAnalyzerOptions options;
    options.date_locale = std::move(locale);
    return options;
}

TEST(to_double, ReadsWhatDetectionCallsANumber) {
    const TypeAnalyzerOptions defaults;
    TypeAnalyzerOptions german;
    german.decimal_separator = u',';
    german.thousands_separator = u'.';
    TypeAnalyzerOptions trimming;
    trimming.trim_nonnumeric = true;
    struct Case {
        const TypeAnalyzerOptions& options;
        const char* text;
        std::optional<double> expected;
    };
    const std::vector<Case> cases = {
        {defaults, " 42 ", 42.0},
        {defaults, "12D4", 120000.0},
        {defaults, "-2.5e-3", -0.0025},
        {defaults, "1e400", std::numeric_limits<double>::infinity()},
        {defaults, "Inf", std::numeric_limits<double>::infinity()},
        {defaults, "1,5", std::nullopt},
        {defaults, "0x1F", std::nullopt},
        {defaults, "-Inf", std::nullopt},
        {defaults, "1e5e5", std::nullopt},
        {defaults, "+-1", std::nullopt},
        {german, "1.234.567,89", 1234567.89},
        {german, "2.5", 25.0},
        {trimming, "$12.50", 12.5},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(to_double(c.options, std::string_view(c.text)), c.expected) << c.text;
        EXPECT_EQ(to_double(c.options, fl::i18n::utf8_to_ustring(c.text)), c.expected) << c.text;
    }
    for (const char* nan : {"NaN", "-nan"}) {
        const auto value = to_double(defaults, std::string_view(nan));
        ASSERT_TRUE(value.has_value()) << nan;
        EXPECT_TRUE(std::isnan(*value)) << nan;
    }
}

TEST(to_iso_datetime, EveryDateForm) {
    struct Case {
        std::u16string locale;
        const char* text;
        std::optional<std::string> expected;
    };
    const std::vector<Case> cases = {
        {u"", "2024-01-05", "2024-01-05"},
        {u"", "2024-01-05T10:20:30.125Z", "2024-01-05T10:20:30.125Z"},
        {u"", "2024-01-05T10:20:30-0530", "2024-01-05T10:20:30-05:30"},
        {u"", "01/05/2024", "2024-01-05"},     // en_US reads month first
        {u"", "13/05/2024", "2024-05-13"},     // ... unless only day first makes sense
        {u"de_DE", "01/05/2024", "2024-05-01"},
        {u"fr_FR", "05.01.2024", "2024-01-05"},
        {u"", "March 5, 2024, 12:00 AM", "2024-03-05T00:00:00"},
        {u"", "Tue, 10 Jun 2003 04:00:00 EST", "2003-06-10T04:00:00-05:00"},
        {u"de_DE", "5. März 2024 23:59:58,5", "2024-03-05T23:59:58.5"},
        {u"fr_FR", "5 juil. 2024", "2024-07-05"},
        {u"es_ES", "5 de marzo de 2024", "2024-03-05"},
        {u"", "2024-02-30", std::nullopt},
        {u"", "Feb 29, 2023", std::nullopt},
        {u"", "2024-01-05 10:20 +25:00", std::nullopt},
        {u"", "24-01-05", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(to_iso_datetime(with_locale(c.locale), std::string_view(c.text)), c.expected) << c.text;
    }
}

TEST(to_duration, NormalisesToHoursMinutesSeconds) {
    const TypeAnalyzerOptions defaults;
    TypeAnalyzerOptions comma;
    comma.decimal_separator = u',';
    struct Case {
        const TypeAnalyzerOptions& options;
        const char* text;
        std::optional<std::string> expected;
    };
    const std::vector<Case> cases = {
        {defaults, "12:30", "12:30:00"},
        {defaults, "2:03:04:05", "51:04:05"},
        {defaults, "-1:30", "-01:30:00"},
        {defaults, "12:30.25", "00:12:30.25"},
        {comma, "0:00:01,75", "00:00:01.75"},
        {defaults, "1:2:3:4:5", std::nullopt},
        {defaults, "12", std::nullopt},
        {defaults, "99999999999999999999:00", std::nullopt},
    };
    for (const Case& c : cases) EXPECT_EQ(to_duration(c.options, std::string_view(c.text)), c.expected) << c.text;
}

TEST(to_uint64, RadixForms) {
    struct Case {
        const char* text;
        std::optional<std::uint64_t> expected;
    };
    const std::vector<Case> cases = {
        {"0x1F", 31},
        {" 0XffFFffFFffFFffFF ", 0xFFFFFFFFFFFFFFFFull},
        {"0x10000000000000000", std::nullopt},
        {"0b101", 5},
        {"0b2", std::nullopt},
        {"123", 123},
        {"-1", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(to_uint64(std::string_view(c.text)), c.expected) << c.text;
        EXPECT_EQ(to_uint64(fl::i18n::utf8_to_ustring(c.text)), c.expected) << c.text;
    }
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
