#include "host/values.hpp"

#include "host/String.hpp"
#include "host/utf.hpp"

namespace tolven::host {

namespace hs = Harnvale::String;
using fl::i18n::utf8_to_ustring;

vxArrayPtr make_text(std::string_view value) {
    return hs::make_String(hs::createStringArray(utf8_to_ustring(value)));
}

vxArrayPtr make_text_list(const std::vector<std::string>& values) {
    std::vector<std::u16string> texts;
    texts.reserve(values.size());
    for (const auto& v : values) texts.push_back(utf8_to_ustring(v));
    return hs::make_String(hs::createStringArray(texts));
}

vxArrayPtr make_logical(bool value) {
    vxArrayPtr array = do_create_numeric(vxClassID::Logical, 1, 1);
    vxGetLogicals(array.get())[0] = value;
    return array;
}

vxArrayPtr make_text_pairs(const std::vector<std::pair<std::string, std::string>>& pairs) {
    hs::StringPtr table = hs::createStringArray(pairs.size(), pairs.empty() ? 0 : 2);
    for (std::size_t r = 0; r < pairs.size(); ++r) {
        table->set(r, 0, utf8_to_ustring(pairs[r].first));
        table->set(r, 1, utf8_to_ustring(pairs[r].second));
    }
    return hs::make_String(table);
}

}  // namespace tolven::host
