#pragma once
// memcpy without a call for the short pieces most values and fields are.

#include <cstddef>
#include <cstring>

namespace fl::bytes {

// Copies n bytes: two copies of a fixed size that overlap cover every length up to twice that
// size (up to 32 bytes), reading and writing only the piece's bytes; longer pieces go to memcpy. GCC 12 warns of
// the branches for other sizes where a literal of known size is inlined, though they are never
// taken for it.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
#pragma GCC diagnostic ignored "-Wstringop-overread"
#endif
inline void copy(void* to_bytes, const void* from_bytes, std::size_t n) noexcept {
    auto* to = static_cast<char*>(to_bytes);
    const auto* from = static_cast<const char*>(from_bytes);
    if (n >= 8 && n <= 16) {
        std::memcpy(to, from, 8);
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n > 16 && n <= 32) {
        std::memcpy(to, from, 16);
        std::memcpy(to + n - 16, from + n - 16, 16);
    } else if (n >= 4 && n < 8) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else if (n < 4) {
        for (std::size_t i = 0; i < n; ++i) to[i] = from[i];
    } else {
        std::memcpy(to, from, n);
    }
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

}  // namespace fl::bytes
