#include "text/textio/Field.hpp"

namespace tolven::io::text::textio {

Field Field::trimmed(std::u16string_view characters) const noexcept {
    const auto first = text_.find_first_not_of(characters);
    if (first == std::u16string_view::npos) return Field(text_.substr(0, 0));
    const auto last = text_.find_last_not_of(characters);
    return Field(text_.substr(first, last - first + 1));
}

bool Field::contains(char16_t c) const noexcept { return text_.find(c) != std::u16string_view::npos; }

}  // namespace tolven::io::text::textio
