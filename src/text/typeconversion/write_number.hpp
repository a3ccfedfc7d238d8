#pragma once
// Numbers written exactly: integers digit for digit, whatever their length, and fractions as the
// shortest text that reads back to the same double. Never an exponent on a whole number.

#include <string>
#include <string_view>

#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::io::text::typeconversion {

enum class NumberStatus : unsigned char {
    Written,       // out holds the number as JSON writes it
    Special,       // out holds "NaN", "Inf" or "-Inf"
    LeadingZeros,  // a number whose integer part starts with a needless 0 ("007", "-01.5"); out holds
                   // it without them
    NotANumber,    // not a number under the options, or a finite text beyond the range of a double
};

// Reads text (UTF-8, trimmed) under the same grammar, separators and trim_nonnumeric rule as
// detection, and writes it to out (whose capacity is reused): the sign "-" when negative (never "+"),
// then for a number without exponent whose fraction is absent or all zeros its integer digits as
// written ("1,000,000.00" with "," as thousands separator gives "1000000"); otherwise the double it
// reads as, as the shortest text that reads back to it: in fixed notation when whole ("1e3" gives
// "1000") or written without exponent ("2.50" gives "2.5", "0.0001" stays), else as it comes
// ("1.5e-7" gives "1.5e-07"). Throws std::bad_alloc only.
NumberStatus write_number(const typedetection::TypeAnalyzerOptions& options, std::string_view text, std::string& out);

}  // namespace tolven::io::text::typeconversion
