#pragma once
// The number grammar shared by classification and conversion, so that whatever is detected as a
// number also converts as one.

#include <string>
#include <string_view>

#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::io::text::typedetection {

// text without the leading characters that cannot begin a number (anything but digits, signs and the
// decimal separator) and the trailing ones that cannot end it (anything but digits and the decimal
// separator): "$12.50" gives "12.50", "45 %" gives "45". Never throws.
std::u16string_view strip_nonnumeric(const TypeAnalyzerOptions& options, std::u16string_view text) noexcept;

// True when text, already trimmed of whitespace, is a decimal number under the options: an optional
// sign, digits with at most one decimal separator (at least one digit in all), then optionally one of
// the exponent characters, an optional sign and digits. Thousands separators are ignored wherever they
// stand; a "." that is not the decimal separator is not part of a number. With trim_nonnumeric the
// text goes through strip_nonnumeric first.
// When normalised is not null it receives the number in C notation ("-1234.5e+3"), ready for a
// floating-point parser; its capacity is reused. Throws std::bad_alloc only while writing normalised.
bool scan_number(const TypeAnalyzerOptions& options, std::u16string_view text, std::string* normalised);

// True when text is one of the special numbers ("NaN", "Inf", "inf", "-inf", "nan", "-nan"). Never throws.
bool is_special_number(std::u16string_view text) noexcept;

}  // namespace tolven::io::text::typedetection
