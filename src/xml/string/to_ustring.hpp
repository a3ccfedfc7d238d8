#pragma once
#include <libxml/xmlstring.h>

#include <string>
#include <string_view>

namespace tolven::io::xml::common::string {
// libxml2 text (UTF-8) as UTF-16; null yields "".
std::u16string to_ustring(const xmlChar* text);
std::u16string to_ustring(std::string_view text);
}  // namespace tolven::io::xml::common::string
