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

TEST(AnalyzerSettings, AreDerivedFromTheOptions) {
    // Separators use only their first character.
    auto s = settings({.DecimalSeparator = u",;", .ThousandsSeparator = u"."});
    EXPECT_EQ(s.decimal_separator, u',');
    EXPECT_EQ(s.thousands_separator, u'.');
    // Empty options fall back, except the exponent characters: empty means no exponent at all.
    s = settings({.DateLocale = u"de_DE", .DecimalSeparator = u"", .ExponentCharacter = u"", .TrimNonnumeric = true});
    EXPECT_EQ(s.decimal_separator, u'.');
    EXPECT_EQ(s.thousands_separator, 0);
    EXPECT_EQ(s.exponent_characters, u"");
    EXPECT_EQ(s.date_locale, u"de_DE");
    EXPECT_TRUE(s.trim_nonnumeric);
    EXPECT_EQ(s.whitespace, u" \t\n\r");
}

}  // namespace
