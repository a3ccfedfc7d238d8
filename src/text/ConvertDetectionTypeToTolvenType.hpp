#pragma once

#include "text/enums.hpp"

namespace tolven::io::text {

// The variable type a value of the given detected kind votes for: numbers vote "double", dates and
// date-times "datetime", durations "duration", hexadecimal and binary "uint64", every kind of text
// "string", and an empty field the empty marker. Values outside the enumeration vote "string".
// Never throws.
TolvenType ConvertDetectionTypeToTolvenType(const textio::enums::ImportTypeID& type) noexcept;

}  // namespace tolven::io::text
