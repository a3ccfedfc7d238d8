// The pieces of one date order per column: the order a value shows, the locale's default, a format
// given by hand, and ISO dates passed through as they stand.
#include "text/typeconversion/DateFormat.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/utf.hpp"
#include "text/typeconversion/DateOrder.hpp"
#include "text/typeconversion/iso_datetime.hpp"

namespace tolven::io::text::typeconversion {
namespace {

std::optional<std::string> iso(const std::optional<DateTimeParts>& parts) {
    if (!parts) return std::nullopt;
    std::string out;
    append_iso_datetime(out, *parts);
    return out;
}

TEST(DateOrder, ValuesDecideWhereTheyCanTheLocaleWhereTheyCannot) {
    const auto& us = LocaleDateData::get(u"en_US");
    using D = DateOrder;
    const std::vector<std::pair<std::u16string, std::optional<D>>> evidence = {
        {u"13/03/2024", D::DayFirst}, {u"03/13/2024 10:00", D::MonthFirst}, {u"13.03.2024", D::DayFirst},
        {u"03/04/2024", std::nullopt}, {u"2024/03/13", std::nullopt},       {u"5 March 2024", std::nullopt},
    };
    for (const auto& [text, order] : evidence) EXPECT_EQ(date_order_evidence(text, us), order) << fl::i18n::ustring_to_utf8(text);
    for (const auto& [locale, order] : std::vector<std::pair<std::u16string, D>>{
             {u"", D::MonthFirst}, {u"en_US", D::MonthFirst}, {u"en_GB", D::DayFirst}, {u"de_DE", D::DayFirst},
             {u"fr_FR", D::DayFirst}, {u"it_IT", D::DayFirst}, {u"ja_JP", D::MonthFirst}})
        EXPECT_EQ(locale_date_order(locale), order) << fl::i18n::ustring_to_utf8(locale);
    EXPECT_EQ(iso(parse_datetime(u"03/04/2024", us, D::DayFirst)), "2024-04-03");
    EXPECT_EQ(iso(parse_datetime(u"13/04/2024", us, D::MonthFirst)), std::nullopt);
}

TEST(DateFormat, ReadsWhatItSaysAndNothingElse) {
    struct Case {
        std::string format, text;
        std::optional<std::string> expected;
    };
    const std::vector<Case> cases = {
        {"%d/%m/%Y", "05/03/2024", "2024-03-05"},
        {"%d/%m/%Y", "5/3/2024", "2024-03-05"},
        {"%d/%m/%Y", "2024-03-05", std::nullopt},
        {"%d/%m/%Y", "31/02/2024", std::nullopt},
        {"%m/%d/%y", "12/31/99", "1999-12-31"},
        {"%Y%m%d", "20240305", "2024-03-05"},
        {"%d. %B %Y", "5.  March 2024", "2024-03-05"},
        {"%d %b %Y", "5 Mar. 2024", "2024-03-05"},
        {"%a, %d %b %Y %T %z", "Tue, 05 Mar 2024 10:20:30 +0100", "2024-03-05T10:20:30+01:00"},
        {"%F %I:%M %p", "2024-03-05 12:15 am", "2024-03-05T00:15:00"},
        {"%F %H:%M:%S", "2024-03-05 10:20:30.25", "2024-03-05T10:20:30.25"},
        {"%d%%%m%%%Y", "05%03%2024", "2024-03-05"},
    };
    const auto& us = LocaleDateData::get(u"en_US");
    for (const Case& c : cases) {
        std::string reason;
        const auto format = DateFormat::compile(c.format, reason);
        ASSERT_TRUE(format) << c.format << ": " << reason;
        EXPECT_EQ(iso(format->parse(fl::i18n::utf8_to_ustring(c.text), us)), c.expected) << c.format << " " << c.text;
    }
    for (const std::string bad : {"%d/%m", "%Y-%m-%d %I:%M", "%d/%m/%Y %q", "%d/%m/%Y%"}) {
        std::string reason;
        EXPECT_FALSE(DateFormat::compile(bad, reason)) << bad;
        EXPECT_FALSE(reason.empty()) << bad;
    }
}

TEST(is_canonical_iso_datetime, OnlyWhatWouldBeWrittenTheSame) {
    for (const char* text : {"2024-02-29", "2024-03-05T10:20:30", "2024-03-05T10:20:30.125Z", "2024-03-05T23:59:59-05:30"})
        EXPECT_TRUE(is_canonical_iso_datetime(text)) << text;
    for (const char* text : {"2023-02-29", "2024-13-01", "2024-03-05T10:20", "2024-03-05 10:20:30", "2024-03-05T24:00:00",
                             "2024-03-05T10:20:30+0100", "2024-03-05T10:20:30-00:00", "2024-3-5", "2024-03-05Z"})
        EXPECT_FALSE(is_canonical_iso_datetime(text)) << text;
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
