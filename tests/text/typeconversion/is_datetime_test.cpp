#include "text/typeconversion/is_datetime.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/utf.hpp"
#include "text/typeconversion/LocaleDateData.hpp"

namespace tolven::io::text::typeconversion {
namespace {

bool accepts(const char* text, const std::u16string& locale) {
    const std::u16string value = fl::i18n::utf8_to_ustring(text);
    return is_datetime(textio::Field(value), locale);
}

TEST(is_datetime, LocaleDecidesNamesAndOwnForms) {
    struct Case {
        std::u16string locale;
        const char* text;
        bool expected;
    };
    const std::vector<Case> cases = {
        {u"", "January 5, 2024", true},
        {u"en_US", "Jan. 5, 2024", true},
        {u"", "5 Janvier 2024", false},
        {u"de_DE", "5. März 2024", true},
        {u"de_DE", "5. MÄRZ 2024", true},   // names compare without regard to case
        {u"de_DE", "05-Mär-2024", true},
        {u"de_DE", "5. Juni 2024", true},   // longest name, not "Jun" + "i"
        {u"de_DE", "5 March 2024", true},   // English names are understood everywhere
        {u"de_DE", "5. Mrz 2024", false},
        {u"fr_FR", "5 janvier 2024", true},
        {u"fr_FR", "5 févr. 2024", true},
        {u"fr_FR", "mardi 5 mars 2024", true},
        {u"fr_FR", "5 janvier", false},
        {u"ja_JP", "2024年3月5日", true},
        {u"xx_YY", "2024-03-05", true},     // an unknown locale still has the fixed forms
        {u"", "2024-03-05 10:20 pm", true},
        {u"", "2024-03-05 0:20 pm", false},
        {u"", "2024-03-05x", false},
        {u"", "2024-03-05 ", false},        // not trimmed here
        {u"", "12024-03-05", false},
        {u"", "nothing here", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(accepts(c.text, c.locale), c.expected) << c.text << " under " << fl::i18n::ustring_to_utf8(c.locale);
    }
}

TEST(LocaleDateData, CachedOncePerLocaleAndOrderedByLocale) {
    const LocaleDateData& german = LocaleDateData::get(u"de_DE");
    EXPECT_EQ(&german, &LocaleDateData::get(u"de_DE"));
    EXPECT_NE(&german, &LocaleDateData::get(u"en_US"));
    EXPECT_TRUE(german.day_first());
    EXPECT_FALSE(LocaleDateData::get(u"").day_first());

    std::size_t length = 0;
    EXPECT_EQ(german.match_month(u"Oktober 2024", length), 10);
    EXPECT_EQ(length, 7u);
    EXPECT_EQ(german.match_month(u"Sept. 2024", length), 9);
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(german.match_month(u"Monday", length), 0);
    EXPECT_EQ(german.match_day_period(u"PM", length), 1);
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
