#pragma once

#include <string>

#include "text/textio/Field.hpp"

namespace tolven::io::text::typeconversion {

// True when the field's text, taken as it is, reads as a date with or without a time under the
// locale ("de_DE", "fr-FR"; "" means en_US): ISO 8601 dates and date-times, numeric dates with the
// year first or last, dates with month names of the locale or English (RFC 1123 included), and the
// locale's own medium, long and full date forms; field ranges are checked.
// Throws std::bad_alloc while a locale's data is loaded for the first time.
bool is_datetime(const textio::Field& field, const std::u16string& locale);

}  // namespace tolven::io::text::typeconversion
