#pragma once
// Host string arrays: rows-by-cols arrays of UTF-16 texts whose elements may be missing.

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/vxArray.hpp"

namespace Harnvale::String {

// A string array. Elements are stored in column-major order; a new array's elements are "" (not missing).
class String {
public:
    String(std::size_t rows, std::size_t cols);
    String(const String&) = delete;
    String& operator=(const String&) = delete;

    std::size_t rows() const noexcept { return rows_; }
    std::size_t cols() const noexcept { return cols_; }
    std::size_t numel() const noexcept { return elements_.size(); }

    // Element i (column-major); std::nullopt when it is missing. Throws std::out_of_range.
    const std::optional<std::u16string>& at(std::size_t i) const;
    const std::optional<std::u16string>& at(std::size_t row, std::size_t col) const;
    bool isMissing(std::size_t i) const { return !at(i).has_value(); }

    void set(std::size_t i, std::u16string text);
    void set(std::size_t row, std::size_t col, std::u16string text);
    void setMissing(std::size_t i);

private:
    friend void intrusive_ptr_add_ref(const String* s) noexcept;
    friend void intrusive_ptr_release(const String* s) noexcept;

    std::size_t rows_;
    std::size_t cols_;
    std::vector<std::optional<std::u16string>> elements_;
    // Shared arrays may be released on several threads, like vxArray's count.
    mutable std::atomic<std::size_t> references_{0};
};

using StringPtr = boost::intrusive_ptr<String>;

// True when the array is of class String.
bool isString(const vxArray* array) noexcept;
// The string array behind a String-class array (shared); null for any other array.
StringPtr getString(const vxArray* array) noexcept;
// True for a 1-by-1 String array whose element is missing.
bool isMissingScalarString(const vxArray* array) noexcept;
// True for a non-missing 1-by-1 String array, or a char row vector (the 0-by-0 char array included).
bool isNonMissingScalarText(const vxArray* array) noexcept;
// The text of a string scalar or char row vector.
// Throws "TOLVEN:string:MissingNotSupported" for a missing string and
// "TOLVEN:string:MustBeStringScalarOrCharacterVector" for anything else.
std::u16string getScalarText(const vxArray* array);

// A 1-by-1 array holding text.
StringPtr createStringArray(std::u16string_view text);
// A 1-by-N array of the texts, in order (0-by-0 when the list is empty).
StringPtr createStringArray(const std::vector<std::u16string>& texts);
// A rows-by-cols array of "" elements.
StringPtr createStringArray(std::size_t rows, std::size_t cols);
// Wraps a string array as a host array of class String (sharing it).
vxArrayPtr make_String(StringPtr strings);

}  // namespace Harnvale::String
