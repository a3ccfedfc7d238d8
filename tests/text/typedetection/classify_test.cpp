#include "text/typedetection/classify.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/utf.hpp"

namespace tolven::io::text::typedetection {
namespace {

using textio::enums::ImportTypeID;

struct Case {
    const char* text;  // UTF-8, so tables read naturally
    ImportTypeID expected;
};

void expect_all(const TypeAnalyzerOptions& options, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(classify(options, fl::i18n::utf8_to_ustring(c.text)), c.expected) << "value: \"" << c.text << "\"";
    }
}

TEST(classify, DefaultSettingsTellEveryKindFromItsNearMiss) {
    expect_all(TypeAnalyzerOptions{}, {
        {"", ImportTypeID::EmptyField},
        {" \t\r\n", ImportTypeID::EmptyField},
        {"42", ImportTypeID::Number},
        {"  -3.25  ", ImportTypeID::Number},
        {"+.5", ImportTypeID::Number},
        {"1e5", ImportTypeID::Number},
        {"12D4", ImportTypeID::Number},
        {"1e", ImportTypeID::Text},
        {"1.2.3", ImportTypeID::Text},
        {"1,234", ImportTypeID::Text},
        {"NaN", ImportTypeID::Text},  // holds no digit
        {"0x1F", ImportTypeID::Hexadecimal},
        {"0x", ImportTypeID::Hexadecimal},
        {"0x1G", ImportTypeID::Text},
        {"0b101", ImportTypeID::Binary},
        {"0b102", ImportTypeID::Text},
        {"12:30", ImportTypeID::Duration},
        {"2:03:04:05", ImportTypeID::Duration},
        {"1:2:3:4:5", ImportTypeID::DurationShapedText},
        {"12::30", ImportTypeID::Text},
        {"10:20 AM", ImportTypeID::Text},
        {"2024-01-05", ImportTypeID::Date},
        {"2024-01-05T10:20:30.125Z", ImportTypeID::DateTime},
        {"Tue, 10 Jun 2003 04:00:00 GMT", ImportTypeID::DateTime},
        {"hello", ImportTypeID::Text},
        {"a|b|", ImportTypeID::MarkedText},
        {"first line\nsecond line", ImportTypeID::MarkedText},
    });
}

TEST(classify, Separators) {
    TypeAnalyzerOptions german;
    german.decimal_separator = u',';
    german.thousands_separator = u'.';
    expect_all(german, {
        {"1.234,5", ImportTypeID::Number},
        {"-0,5", ImportTypeID::Number},
        {"1,2,3", ImportTypeID::Text},
        {"01:02:03,5", ImportTypeID::Duration},
        // Separators are dropped wherever they stand, so a dotted date reads as the number 5012024
        // before the date test is reached; the date form with slashes is unaffected.
        {"05.01.2024", ImportTypeID::Number},
        {"05/01/2024", ImportTypeID::Date},
    });

    TypeAnalyzerOptions comma_decimal;
    comma_decimal.decimal_separator = u',';
    expect_all(comma_decimal, {{"2,5", ImportTypeID::Number}, {"2.5", ImportTypeID::Text}});

    TypeAnalyzerOptions comma_thousands;
    comma_thousands.thousands_separator = u',';
    expect_all(comma_thousands, {{"1,234,567.89", ImportTypeID::Number}, {",", ImportTypeID::Text}});
}

TEST(classify, ExponentCharactersComeFromSettings) {
    TypeAnalyzerOptions none;
    none.exponent_characters.clear();
    expect_all(none, {{"1e5", ImportTypeID::Text}, {"12D4", ImportTypeID::Text}, {"15", ImportTypeID::Number}});

    TypeAnalyzerOptions lower_e;
    lower_e.exponent_characters = u"e";
    expect_all(lower_e, {{"1e5", ImportTypeID::Number}, {"1E5", ImportTypeID::Text}, {"1d5", ImportTypeID::Text}});
}

TEST(classify, TrimNonnumericStripsUnitsAndCurrencies) {
    TypeAnalyzerOptions off;
    expect_all(off, {{"$12.50", ImportTypeID::Text}, {"45 %", ImportTypeID::Text}});

    TypeAnalyzerOptions on;
    on.trim_nonnumeric = true;
    expect_all(on, {
        {"$12.50", ImportTypeID::Number},
        {"45 %", ImportTypeID::Number},
        {"12 kg 5", ImportTypeID::Text},
        {"$", ImportTypeID::Text},
        {"2024-01-05", ImportTypeID::Date},
    });

    TypeAnalyzerOptions euro = on;
    euro.decimal_separator = u',';
    expect_all(euro, {{"3,20 €", ImportTypeID::Number}});
}

TEST(classify, DatesFollowTheLocale) {
    TypeAnalyzerOptions german;
    german.date_locale = u"de_DE";
    expect_all(german, {
        {"5. März 2024", ImportTypeID::Date},
        {"5. März 2024 10:20", ImportTypeID::DateTime},
        {"05.03.2024", ImportTypeID::Date},
    });

    TypeAnalyzerOptions french;
    french.date_locale = u"fr_FR";
    expect_all(french, {
        {"5 janv. 2024", ImportTypeID::Date},
        {"lundi 5 février 2024", ImportTypeID::Date},
        {"5 jnvier 2024", ImportTypeID::Text},
    });

    // Neither month name means anything in en_US.
    expect_all(TypeAnalyzerOptions{}, {{"5 janvier 2024", ImportTypeID::Text}, {"05-März-2024", ImportTypeID::Text}});
}

TEST(classify, ImpossibleCalendarDatesAreText) {
    expect_all(TypeAnalyzerOptions{}, {
        {"2024-02-29", ImportTypeID::Date},
        {"2023-02-29", ImportTypeID::Text},
        {"1900-02-29", ImportTypeID::Text},
        {"2000-02-29", ImportTypeID::Date},
        {"2024-04-31", ImportTypeID::Text},
        {"2024-13-01", ImportTypeID::Text},
        {"13/13/2024", ImportTypeID::Text},
        {"2024-01-05 24:00", ImportTypeID::Text},
        {"Jan 5, 2024 13:00 PM", ImportTypeID::Text},
    });
}

}  // namespace
}  // namespace tolven::io::text::typedetection
