#pragma once
// UTF-8 <-> UTF-16 conversion for text that crosses the host boundary.
// Invalid input never fails: ill-formed sequences become U+FFFD.

#include <string>
#include <string_view>

namespace fl::i18n {

std::string ustring_to_utf8(std::u16string_view text);
std::u16string utf8_to_ustring(std::string_view text);

}  // namespace fl::i18n
