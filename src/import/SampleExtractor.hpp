#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace tolven::import {

// The first bytes of a larger document made into a well-formed document of their own: cut after the
// last complete piece of markup (text after it may stop inside a character or a reference, so it
// goes) and every element still open closed in order. nullopt when the root element does not start
// within prefix, or when the encoding is not ASCII-compatible (a UTF-16 byte order mark or zero bytes
// in the first characters), since then markup cannot be found byte by byte.
std::optional<std::string> close_sample(std::string_view prefix);

}  // namespace tolven::import
