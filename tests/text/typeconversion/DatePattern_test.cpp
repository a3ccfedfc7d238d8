#include "text/typeconversion/DatePattern.hpp"

#include <gtest/gtest.h>

namespace tolven::io::text::typeconversion {
namespace {

TEST(compile_date_pattern, QuotedLiterals) {
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
