#include "text/textio/MutableField.hpp"

#include <unicode/ustring.h>

#include <algorithm>
#include <climits>
#include <stdexcept>

namespace tolven::io::text::textio {

void MutableField::assign_utf8(std::string_view utf8) {
    const bool ascii =
        std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    // Most values in documents are ASCII; widening them directly skips ICU's per-call setup.
    buffer_.resize(utf8.size());
    if (ascii) {
        std::transform(utf8.begin(), utf8.end(), buffer_.begin(),
                       [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
        return;
    }
    if (utf8.size() > static_cast<std::size_t>(INT32_MAX)) throw std::length_error("value too long to convert");
    // UTF-8 never needs more UTF-16 units than it has bytes, so one pass into the buffer suffices.
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(buffer_.data(), static_cast<int32_t>(buffer_.size()), &length, utf8.data(),
                         static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) throw std::runtime_error(std::string("UTF-8 to UTF-16 conversion failed: ") + u_errorName(status));
    buffer_.resize(static_cast<std::size_t>(length));
}

void MutableField::assign(std::u16string_view text) { buffer_.assign(text); }

}  // namespace tolven::io::text::textio
