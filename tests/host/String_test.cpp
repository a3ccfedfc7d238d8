#include "host/String.hpp"

#include <gtest/gtest.h>

#include "host/except/Exception.hpp"

namespace {

namespace hs = Harnvale::String;

std::string error_of(const vxArray* array) {
    try {
        hs::getScalarText(array);
    } catch (const foundation::core::except::IMsgIDException& e) {
        return e.GetID();
    }
    return "";
}

TEST(String, NewArraysHoldEmptyTextNotMissing) {
    hs::StringPtr s = hs::createStringArray(2, 3);
    EXPECT_EQ(s->numel(), 6u);
    EXPECT_FALSE(s->isMissing(5));
    s->set(1, 2, u"last");
    EXPECT_EQ(*s->at(5), u"last");  // column-major
    EXPECT_THROW(s->at(6), std::out_of_range);
    EXPECT_EQ(hs::createStringArray(std::vector<std::u16string>{})->rows(), 0u);
    EXPECT_EQ(hs::createStringArray(std::vector<std::u16string>{u"a", u"b"})->cols(), 2u);
}

TEST(String, ScalarTextChecks) {
    hs::StringPtr missing = hs::createStringArray(1, 1);
    missing->setMissing(0);
    const vxArrayPtr missing_array = hs::make_String(missing);
    const vxArrayPtr scalar = hs::make_String(hs::createStringArray(u"x"));
    const vxArrayPtr pair = hs::make_String(hs::createStringArray(std::vector<std::u16string>{u"a", u"b"}));
    const vxArrayPtr row = do_create_char(u"chars");
    const vxArrayPtr empty_chars = do_create_char(u"");
    const vxArrayPtr matrix = do_create_char(u"abcd", 2, 2);
    const vxArrayPtr number = do_create_numeric(vxClassID::Double, 1, 1);

    EXPECT_TRUE(hs::isMissingScalarString(missing_array.get()));
    EXPECT_FALSE(hs::isNonMissingScalarText(missing_array.get()));
    EXPECT_TRUE(hs::isNonMissingScalarText(scalar.get()));
    EXPECT_TRUE(hs::isNonMissingScalarText(row.get()));
    EXPECT_TRUE(hs::isNonMissingScalarText(empty_chars.get()));
    EXPECT_FALSE(hs::isNonMissingScalarText(pair.get()));
    EXPECT_FALSE(hs::isNonMissingScalarText(matrix.get()));

    EXPECT_EQ(hs::getScalarText(row.get()), u"chars");
    EXPECT_EQ(hs::getScalarText(scalar.get()), u"x");
    EXPECT_EQ(error_of(missing_array.get()), "TOLVEN:string:MissingNotSupported");
    EXPECT_EQ(error_of(number.get()), "TOLVEN:string:MustBeStringScalarOrCharacterVector");
    EXPECT_EQ(error_of(matrix.get()), "TOLVEN:string:MustBeStringScalarOrCharacterVector");
}

}  // namespace
