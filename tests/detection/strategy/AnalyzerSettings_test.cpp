#include <gtest/gtest.h>

#include "detection/options/make_detection_options.hpp"
#include "detection/strategy/DetectionStrategy.hpp"
#include "detection/support/detect_helpers.hpp"

namespace {

using namespace tolven::io::xml::detection;
using tolven::testing::HintFields;

// Exposes the settings a strategy derives from the options.
class Probe : public strategy::DetectionStrategy {
public:
    using DetectionStrategy::DetectionStrategy;
    std::optional<Table> DetectTable() const override { return std::nullopt; }
    using DetectionStrategy::analyzer_options;
};

tolven::io::text::typedetection::TypeAnalyzerOptions settings(const HintFields& fields) {
    auto doc = tolven::testing::parse_xml("<a/>");
    vxArrayPtr hints = tolven::testing::make_hint_struct(fields);
    const Probe probe(doc.get(), options::make_detection_options(hints.get()));
    return probe.analyzer_options();
}

TEST(AnalyzerSettings, SeparatorsUseOnlyTheirFirstCharacter) {
    HintFields f;
    f.DecimalSeparator = u",;";
    f.ThousandsSeparator = u".";
    const auto s = settings(f);
    EXPECT_EQ(s.decimal_separator, u',');
    EXPECT_EQ(s.thousands_separator, u'.');
}

TEST(AnalyzerSettings, EmptyOptionsFallBackExceptTheExponentCharacters) {
    HintFields f;
    f.DecimalSeparator = u"";
    f.ThousandsSeparator = u"";
    f.ExponentCharacter = u"";
    f.DateLocale = u"de_DE";
    f.TrimNonnumeric = true;
    const auto s = settings(f);
    EXPECT_EQ(s.decimal_separator, u'.');
    EXPECT_EQ(s.thousands_separator, 0);
    // An empty value replaces the analyzer's own default: no exponent at all.
    EXPECT_EQ(s.exponent_characters, u"");
    EXPECT_EQ(s.date_locale, u"de_DE");
    EXPECT_TRUE(s.trim_nonnumeric);
    EXPECT_EQ(s.whitespace, u" \t\n\r");
}

}  // namespace
