#include "text/typedetection/classify.hpp"

#include <algorithm>
#include <optional>

#include "text/constants.hpp"
#include "text/textio/Field.hpp"
#include "text/typeconversion/is_datetime.hpp"
#include "text/typedetection/radix_literal.hpp"
#include "text/typedetection/scan_duration.hpp"
#include "text/typedetection/scan_number.hpp"

namespace tolven::io::text::typedetection {

namespace {

using textio::enums::ImportTypeID;
using Verdict = std::optional<ImportTypeID>;

Verdict number(const TypeAnalyzerOptions& options, const textio::Field& field) {
    // The digit test first: it turns words away without running the grammar.
    const bool has_digit = field.text().find_first_of(constants::digits) != std::u16string_view::npos;
    if (has_digit && scan_number(options, field.text(), nullptr)) return ImportTypeID::Number;
    return std::nullopt;
}

Verdict hexadecimal(const TypeAnalyzerOptions&, const textio::Field& field) {
    if (is_hexadecimal_literal(field.text())) return ImportTypeID::Hexadecimal;
    return std::nullopt;
}

Verdict binary(const TypeAnalyzerOptions&, const textio::Field& field) {
    if (is_binary_literal(field.text())) return ImportTypeID::Binary;
    return std::nullopt;
}

Verdict duration(const TypeAnalyzerOptions& options, const textio::Field& field) {
    switch (scan_duration(field.text(), options.decimal_separator).kind) {
        case DurationShape::Kind::Duration: return ImportTypeID::Duration;
        case DurationShape::Kind::Malformed: return ImportTypeID::DurationShapedText;
        case DurationShape::Kind::None: break;
    }
    return std::nullopt;
}

Verdict datetime(const TypeAnalyzerOptions& options, const textio::Field& field) {
    bool accepted = false;
    try {
        accepted = typeconversion::is_datetime(field, options.date_locale);
    } catch (...) {
        // A date test that cannot run (the locale's data failed to load) simply does not accept.
        accepted = false;
    }
    if (!accepted) return std::nullopt;
    return field.contains(u':') ? ImportTypeID::DateTime : ImportTypeID::Date;
}

// Text that spans lines or ends in "|" is told apart from plain text; both import as strings.
ImportTypeID text(const textio::Field& field) {
    const std::u16string_view value = field.text();
    const bool multiline = value.find_first_of(u"\r\n") != std::u16string_view::npos;
    return multiline || value.back() == u'|' ? ImportTypeID::MarkedText : ImportTypeID::Text;
}

// The tests in the order they are tried. Order matters: "12:30" is a duration before it could be a
// time, "1e5" a number before anything else, and "0x1F" fails the number grammar at the "x".
using Test = Verdict (*)(const TypeAnalyzerOptions&, const textio::Field&);
constexpr Test tests[] = {number, hexadecimal, binary, duration, datetime};

}  // namespace

textio::enums::ImportTypeID classify(const TypeAnalyzerOptions& options, std::u16string_view value) {
    const textio::Field field = textio::Field(value).trimmed(options.whitespace);
    if (field.empty()) return ImportTypeID::EmptyField;
    for (const Test test : tests) {
        if (const Verdict verdict = test(options, field)) return *verdict;
    }
    return text(field);
}

}  // namespace tolven::io::text::typedetection
