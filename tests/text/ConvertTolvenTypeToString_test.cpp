#include "text/ConvertTolvenTypeToString.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "text/ConvertDetectionTypeToTolvenType.hpp"

namespace tolven::io::text {
namespace {

using textio::enums::ImportTypeID;

TEST(ConvertDetectionTypeToTolvenType, EveryDetectionTypeToItsName) {
    const std::vector<std::pair<ImportTypeID, std::u16string>> cases = {
        {ImportTypeID::Number, u"double"},         {ImportTypeID::Text, u"string"},
        {ImportTypeID::DateTime, u"datetime"},     {ImportTypeID::Date, u"datetime"},
        {ImportTypeID::Duration, u"duration"},     {ImportTypeID::Hexadecimal, u"uint64"},
        {ImportTypeID::Binary, u"uint64"},         {ImportTypeID::DurationShapedText, u"string"},
        {ImportTypeID::MarkedText, u"string"},
    };
    for (const auto& [detected, name] : cases) {
        EXPECT_EQ(ConvertTolvenTypeToString(ConvertDetectionTypeToTolvenType(detected)), name)
            << static_cast<int>(detected);
    }
    EXPECT_EQ(ConvertDetectionTypeToTolvenType(ImportTypeID::EmptyField), TolvenType::Empty);
}

TEST(ConvertTolvenTypeToString, FixedNumbersAndNames) {
    EXPECT_EQ(static_cast<int>(TolvenType::String), 14);
    EXPECT_EQ(static_cast<int>(TolvenType::Empty), 18);
    EXPECT_EQ(ConvertTolvenTypeToString(TolvenType::String), u"string");
    EXPECT_EQ(ConvertTolvenTypeToString(TolvenType::Empty), u"string");
    EXPECT_EQ(ConvertTolvenTypeToString(TolvenType::Logical), u"logical");
    EXPECT_THROW(ConvertTolvenTypeToString(static_cast<TolvenType>(17)), std::invalid_argument);
}

}  // namespace
}  // namespace tolven::io::text
