#pragma once
// Owns the UTF-16 text of one value. The buffer is kept between assignments, so a loop that
// converts value after value into the same MutableField allocates only when a longer value arrives.

#include <string>
#include <string_view>

#include "text/textio/Field.hpp"

namespace tolven::io::text::textio {

class MutableField {
public:
    // Replaces the text with the UTF-16 form of utf8; ill-formed sequences become U+FFFD.
    // Throws std::bad_alloc, and std::length_error for text beyond 2^31 bytes.
    void assign_utf8(std::string_view utf8);
    // Replaces the text. Throws std::bad_alloc.
    void assign(std::u16string_view text);

    Field field() const noexcept { return Field(buffer_); }
    std::u16string_view text() const noexcept { return buffer_; }

private:
    std::u16string buffer_;
};

}  // namespace tolven::io::text::textio
