#include "text/typeconversion/is_datetime.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/utf.hpp"

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
        {u"", "5 Janvier 2024", false},
        {u"de_DE", "5. MÄRZ 2024", true},   // names compare without regard to case
        {u"de_DE", "5. Juni 2024", true},   // longest name, not "Jun" + "i"
        {u"de_DE", "5 March 2024", true},   // English names are understood everywhere
        {u"de_DE", "5. Mrz 2024", false},
        {u"fr_FR", "5 févr. 2024", true},
        {u"fr_FR", "5 janvier", false},
        {u"ja_JP", "2024年3月5日", true},
        {u"xx_YY", "2024-03-05", true},     // an unknown locale still has the fixed forms
        {u"", "2024-03-05 0:20 pm", false},
        {u"", "2024-03-05 ", false},        // not trimmed here
        {u"", "12024-03-05", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(accepts(c.text, c.locale), c.expected) << c.text << " under " << fl::i18n::ustring_to_utf8(c.locale);
    }
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
