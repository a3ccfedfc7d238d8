#pragma once
// Conversion of values by their detected type, with the settings detection used, so that every value
// detected as a type converts to it. Each function trims whitespace first (options.whitespace, or
// " \t\n\r" where there are no options) and returns nullopt when the text does not convert.
// The UTF-8 overloads reuse a per-thread buffer and do not allocate on the common path.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::io::text::typeconversion {

// The number in text under the same grammar, separators and trim_nonnumeric rule as detection; also
// the special numbers "NaN", "Inf", "inf", "-inf", "nan", "-nan". Values beyond the range of a double
// give an infinity or zero. Throws std::bad_alloc only.
std::optional<double> to_double(const typedetection::TypeAnalyzerOptions& options, std::u16string_view text);
std::optional<double> to_double(const typedetection::TypeAnalyzerOptions& options, std::string_view text);

// The date in ISO 8601: "2024-01-05" for a date, "2024-01-05T10:20:30.125" for a date-time (seconds
// always written, the fraction as given), followed by "Z" or "+hh:mm" when the text had a zone.
// Dates are read under options.date_locale. Throws std::bad_alloc only.
std::optional<std::string> to_iso_datetime(const typedetection::TypeAnalyzerOptions& options,
                                           std::u16string_view text);
std::optional<std::string> to_iso_datetime(const typedetection::TypeAnalyzerOptions& options, std::string_view text);

// The duration as "hh:mm:ss[.fff]": hours may exceed 24, days are folded into hours, minutes and
// seconds beyond 59 carry over, a leading "-" is kept. Two groups read as hours and minutes, or as
// minutes and seconds when a fraction follows ("12:30.5"). options.decimal_separator introduces the
// fraction. nullopt also when the total overflows. Throws std::bad_alloc only.
std::optional<std::string> to_duration(const typedetection::TypeAnalyzerOptions& options, std::u16string_view text);
std::optional<std::string> to_duration(const typedetection::TypeAnalyzerOptions& options, std::string_view text);

// The unsigned integer written as "0x1F" (hexadecimal), "0b101" (binary) or plain decimal digits;
// nullopt for a bare prefix or a value above 2^64-1. Never throws.
std::optional<std::uint64_t> to_uint64(std::u16string_view text) noexcept;
std::optional<std::uint64_t> to_uint64(std::string_view text) noexcept;

}  // namespace tolven::io::text::typeconversion
