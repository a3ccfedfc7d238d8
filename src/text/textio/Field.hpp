#pragma once
// A read-only view of one value's UTF-16 text; it never owns the characters.

#include <cstddef>
#include <string_view>

namespace tolven::io::text::textio {

class Field {
public:
    constexpr Field() noexcept = default;
    constexpr explicit Field(std::u16string_view text) noexcept : text_(text) {}

    constexpr std::u16string_view text() const noexcept { return text_; }
    constexpr std::size_t size() const noexcept { return text_.size(); }
    constexpr bool empty() const noexcept { return text_.empty(); }
    constexpr char16_t operator[](std::size_t i) const noexcept { return text_[i]; }

    // The field without the leading and trailing characters that occur in `characters`. Never throws.
    Field trimmed(std::u16string_view characters) const noexcept;
    // True when the field holds the character c. Never throws.
    bool contains(char16_t c) const noexcept;

private:
    std::u16string_view text_;
};

}  // namespace tolven::io::text::textio
