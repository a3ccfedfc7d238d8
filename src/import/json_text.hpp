#pragma once
#include <string>
#include <string_view>

#include "import/Cell.hpp"
#include "import/OutputStream.hpp"

namespace tolven::import {

// text as a JSON string literal, quotes included; the input is UTF-8 and passes through unchanged
// except for the quote, the backslash and the control characters, which are escaped.
void write_json_string(OutputStream& out, std::string_view text);
std::string json_string(std::string_view text);
// A cell as a JSON value: a number as it stands, text as a string, a missing value as null, a list
// as an array of its items.
void write_json_value(OutputStream& out, const Cell& cell);

}  // namespace tolven::import
