#include "text/typeconversion/DatePattern.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace tolven::io::text::typeconversion {
namespace {

using K = DateItemKind;

std::vector<K> kinds(std::u16string_view pattern) {
    std::vector<K> out;
    const auto compiled = compile_date_pattern(pattern);
    if (compiled) {
        for (const DateItem& item : compiled->items) out.push_back(item.kind);
    }
    return out;
}

TEST(compile_date_pattern, FieldsLiteralsAndQuotes) {
    EXPECT_EQ(kinds(u"MMM d, y"), (std::vector<K>{K::MonthName, K::Space, K::Day, K::Literal, K::Space, K::Year}));
    EXPECT_EQ(kinds(u"EEEE, d. MMMM y"),
              (std::vector<K>{K::Weekday, K::Literal, K::Space, K::Day, K::Literal, K::Space, K::MonthName, K::Space,
                              K::Year}));
    EXPECT_EQ(kinds(u"dd.MM.yyyy"), (std::vector<K>{K::Day, K::Literal, K::MonthNumber, K::Literal, K::Year}));

    const auto spanish = compile_date_pattern(u"d 'de' MMMM 'de' y");
    ASSERT_TRUE(spanish.has_value());
    ASSERT_EQ(spanish->items.size(), 9u);
    EXPECT_EQ(spanish->items[2].literal, u"de");

    const auto quoted = compile_date_pattern(u"d''MMM''y'o''clock'");
    ASSERT_TRUE(quoted.has_value());
    EXPECT_EQ(quoted->items[1].literal, u"'");
    EXPECT_EQ(quoted->items.back().literal, u"o'clock");
}

TEST(compile_date_pattern, RefusesWhatCannotBeChecked) {
    for (const std::u16string_view pattern : {u"M/d/yy", u"G y MMM d", u"w y", u"MMM y", u"d MMM", u""}) {
        EXPECT_FALSE(compile_date_pattern(pattern).has_value()) << std::string(pattern.begin(), pattern.end());
    }
}

}  // namespace
}  // namespace tolven::io::text::typeconversion
