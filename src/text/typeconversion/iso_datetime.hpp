#pragma once
// Dates and times written in ISO 8601, and the fast test for values that are so written already.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/typeconversion/parse_datetime.hpp"

namespace tolven::io::text::typeconversion {

// Appends value in decimal, with leading zeros up to width digits. Throws std::bad_alloc.
void append_padded(std::string& out, std::uint64_t value, std::size_t width);

// Appends "2024-01-05" for a date, "2024-01-05T10:20:30.125" for a date-time (seconds always
// written, the fraction as given), followed by "Z" or "+hh:mm" when the parts have a zone.
// Throws std::bad_alloc.
void append_iso_datetime(std::string& out, const DateTimeParts& parts);

// True when text (UTF-8, trimmed) is exactly what append_iso_datetime writes for the date it reads
// as: "YYYY-MM-DD" or "YYYY-MM-DDThh:mm:ss[.f...][Z|+hh:mm|-hh:mm]", every field in range (29
// February only in leap years); such a value is written as it stands. Never throws.
bool is_canonical_iso_datetime(std::string_view text) noexcept;

}  // namespace tolven::io::text::typeconversion
