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

TEST(String, MissingElementsAndScalarText) {
    hs::StringPtr fresh = hs::createStringArray(1, 1);
    EXPECT_FALSE(fresh->isMissing(0));
    EXPECT_EQ(*fresh->at(0), u"");

    hs::StringPtr missing = hs::createStringArray(1, 1);
    missing->setMissing(0);
    const vxArrayPtr missing_array = hs::make_String(missing);
    const vxArrayPtr scalar = hs::make_String(hs::createStringArray(u"x"));
    const vxArrayPtr row = do_create_char(u"chars");
    const vxArrayPtr matrix = do_create_char(u"abcd", 2, 2);
    const vxArrayPtr number = do_create_numeric(vxClassID::Double, 1, 1);

    EXPECT_TRUE(hs::isMissingScalarString(missing_array.get()));
    EXPECT_FALSE(hs::isNonMissingScalarText(missing_array.get()));
    EXPECT_TRUE(hs::isNonMissingScalarText(row.get()));
    EXPECT_FALSE(hs::isNonMissingScalarText(matrix.get()));

    EXPECT_EQ(hs::getScalarText(row.get()), u"chars");
    EXPECT_EQ(hs::getScalarText(scalar.get()), u"x");
    EXPECT_EQ(error_of(missing_array.get()), "TOLVEN:string:MissingNotSupported");
    EXPECT_EQ(error_of(number.get()), "TOLVEN:string:MustBeStringScalarOrCharacterVector");
    EXPECT_EQ(error_of(matrix.get()), "TOLVEN:string:MustBeStringScalarOrCharacterVector");
}

}  // namespace
