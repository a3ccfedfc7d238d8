#include "xml/string/to_ustring.hpp"

#include "host/utf.hpp"

namespace tolven::io::xml::common::string {

std::u16string to_ustring(const xmlChar* text) {
    if (text == nullptr) return {};
    return fl::i18n::utf8_to_ustring(reinterpret_cast<const char*>(text));
}

std::u16string to_ustring(std::string_view text) { return fl::i18n::utf8_to_ustring(text); }

}  // namespace tolven::io::xml::common::string
