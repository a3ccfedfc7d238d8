#include "text/textio/trim.hpp"

namespace tolven::io::text::textio {

std::string_view trim_whitespace(std::string_view text) noexcept {
    constexpr std::string_view whitespace = " \t\n\r";
    const auto first = text.find_first_not_of(whitespace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(whitespace) - first + 1);
}

}  // namespace tolven::io::text::textio
