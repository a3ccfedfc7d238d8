#include "host/utf.hpp"

#include <unicode/ustring.h>

#include <climits>
#include <stdexcept>

namespace fl::i18n {

namespace {
constexpr UChar32 kReplacement = 0xFFFD;

int32_t checked_length(std::size_t size) {
    if (size > static_cast<std::size_t>(INT32_MAX)) throw std::length_error("text too long to convert");
    return static_cast<int32_t>(size);
}
}  // namespace

std::string ustring_to_utf8(std::u16string_view text) {
    std::string out;
    if (text.empty()) return out;
    // A UTF-16 unit becomes at most three UTF-8 bytes (a surrogate pair, two units, becomes four).
    out.resize(text.size() * 3);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data(), checked_length(out.size()), &length, text.data(), checked_length(text.size()),
                       kReplacement, nullptr, &status);
    if (U_FAILURE(status)) throw std::runtime_error(std::string("UTF-16 to UTF-8 conversion failed: ") + u_errorName(status));
    out.resize(static_cast<std::size_t>(length));
    return out;
}

std::u16string utf8_to_ustring(std::string_view text) {
    std::u16string out;
    if (text.empty()) return out;
    out.resize(text.size());  // never more UTF-16 units than UTF-8 bytes
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), checked_length(out.size()), &length, text.data(),
                         checked_length(text.size()), kReplacement, nullptr, &status);
    if (U_FAILURE(status)) throw std::runtime_error(std::string("UTF-8 to UTF-16 conversion failed: ") + u_errorName(status));
    out.resize(static_cast<std::size_t>(length));
    return out;
}

}  // namespace fl::i18n
