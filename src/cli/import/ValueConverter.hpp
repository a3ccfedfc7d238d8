#pragma once
// Converts a column's text values by the column's detected type.

#include <string>
#include <string_view>

#include "cli/import/Cell.hpp"
#include "detection/options/DetectionOptions.hpp"
#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::cli::import {

// The settings values are read with: the same that detection derives from the hint structure.
io::text::typedetection::TypeAnalyzerOptions make_analyzer_options(
    const io::xml::detection::options::DetectionOptions& options);

class ValueConverter {
public:
    // type_name as detection names it; the options must outlive the converter.
    ValueConverter(std::string_view type_name, const io::text::typedetection::TypeAnalyzerOptions& options);

    // The cell for a non-empty, trimmed value; a Missing cell when the value does not convert.
    // "double" (and the other number types but the unsigned ones) is written as the shortest text
    // that reads back to the same value, NaN and infinities as the text "NaN", "Inf", "-Inf";
    // unsigned integers in decimal; "datetime" in ISO 8601; "duration" as hh:mm:ss[.fff];
    // everything else as the text itself. The cell borrows from the converter until the next call.
    Cell convert(std::string_view text);

private:
    enum class Target { Text, Double, UInt64, Datetime, Duration };
    Target target_;
    const io::text::typedetection::TypeAnalyzerOptions* options_;
    char number_[40];
    std::string converted_;
};

}  // namespace tolven::cli::import
