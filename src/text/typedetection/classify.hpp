#pragma once

#include <string_view>

#include "text/TypeAnalyzerOptions.hpp"
#include "text/enums.hpp"

namespace tolven::io::text::typedetection {

// The detected kind of one value. The text is trimmed of options.whitespace first; nothing left is
// EmptyField. Then, first match wins: number, hexadecimal, binary, duration (or duration-shaped text),
// date or date-time under options.date_locale, text. Throws std::bad_alloc only.
textio::enums::ImportTypeID classify(const TypeAnalyzerOptions& options, std::u16string_view text);

}  // namespace tolven::io::text::typedetection
