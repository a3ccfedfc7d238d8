#include "cli/import/ValueConverter.hpp"

#include <charconv>
#include <cmath>

#include "text/typeconversion/convert.hpp"

namespace tolven::cli::import {

namespace conv = io::text::typeconversion;

io::text::typedetection::TypeAnalyzerOptions make_analyzer_options(
    const io::xml::detection::options::DetectionOptions& o) {
    io::text::typedetection::TypeAnalyzerOptions a;
    // Only the first unit of each separator counts, as in detection.
    a.thousands_separator = o.ThousandsSeparator.empty() ? 0 : o.ThousandsSeparator.front();
    a.decimal_separator = o.DecimalSeparator.empty() ? u'.' : o.DecimalSeparator.front();
    a.exponent_characters = o.ExponentCharacter;
    a.trim_nonnumeric = o.TrimNonnumeric;
    a.date_locale = o.DateLocale;
    return a;
}

ValueConverter::ValueConverter(std::string_view type, const io::text::typedetection::TypeAnalyzerOptions& options)
    : target_(Target::Text), options_(&options), number_{} {
    if (type == "double" || type == "single" || type == "int8" || type == "int16" || type == "int32" ||
        type == "int64")
        target_ = Target::Double;
    else if (type == "uint8" || type == "uint16" || type == "uint32" || type == "uint64")
        target_ = Target::UInt64;
    else if (type == "datetime")
        target_ = Target::Datetime;
    else if (type == "duration")
        target_ = Target::Duration;
}

Cell ValueConverter::convert(std::string_view text) {
    switch (target_) {
        case Target::Text: return {Cell::Kind::Text, text};
        case Target::Double: {
            const auto value = conv::to_double(*options_, text);
            if (!value) return {};
            if (std::isnan(*value)) return {Cell::Kind::Text, "NaN"};
            if (std::isinf(*value)) return {Cell::Kind::Text, *value > 0 ? "Inf" : "-Inf"};
            const auto r = std::to_chars(number_, number_ + sizeof number_, *value);
            return {Cell::Kind::Number, std::string_view(number_, static_cast<std::size_t>(r.ptr - number_))};
        }
        case Target::UInt64: {
            const auto value = conv::to_uint64(text);
            if (!value) return {};
            const auto r = std::to_chars(number_, number_ + sizeof number_, *value);
            return {Cell::Kind::Number, std::string_view(number_, static_cast<std::size_t>(r.ptr - number_))};
        }
        case Target::Datetime:
        case Target::Duration: {
            auto value = target_ == Target::Datetime ? conv::to_iso_datetime(*options_, text)
                                                     : conv::to_duration(*options_, text);
            if (!value) return {};
            converted_ = std::move(*value);
            return {Cell::Kind::Text, converted_};
        }
    }
    return {};
}

}  // namespace tolven::cli::import
