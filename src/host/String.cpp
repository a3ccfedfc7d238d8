#include "host/String.hpp"

#include <stdexcept>

#include "host/detail/string_arrays.hpp"
#include "host/except/Exception.hpp"
#include "host/except/StringErrors.hpp"

namespace Harnvale::String {

String::String(std::size_t rows, std::size_t cols)
    : rows_(rows), cols_(cols), elements_(rows * cols, std::u16string()) {}

const std::optional<std::u16string>& String::at(std::size_t i) const {
    if (i >= elements_.size()) throw std::out_of_range("string array index out of range");
    return elements_[i];
}

const std::optional<std::u16string>& String::at(std::size_t row, std::size_t col) const {
    if (row >= rows_ || col >= cols_) throw std::out_of_range("string array index out of range");
    return elements_[row + col * rows_];
}

void String::set(std::size_t i, std::u16string text) {
    if (i >= elements_.size()) throw std::out_of_range("string array index out of range");
    elements_[i] = std::move(text);
}

void String::set(std::size_t row, std::size_t col, std::u16string text) {
    if (row >= rows_ || col >= cols_) throw std::out_of_range("string array index out of range");
    elements_[row + col * rows_] = std::move(text);
}

void String::setMissing(std::size_t i) {
    if (i >= elements_.size()) throw std::out_of_range("string array index out of range");
    elements_[i].reset();
}

void intrusive_ptr_add_ref(const String* s) noexcept { s->references_.fetch_add(1, std::memory_order_relaxed); }

void intrusive_ptr_release(const String* s) noexcept {
    if (s->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete s;
}

bool isString(const vxArray* array) noexcept { return array && vxGetClassID(array) == vxClassID::String; }

StringPtr getString(const vxArray* array) noexcept { return Harnvale_get_string_array(array); }

bool isMissingScalarString(const vxArray* array) noexcept {
    StringPtr s = getString(array);
    return s && s->numel() == 1 && s->isMissing(0);
}

bool isNonMissingScalarText(const vxArray* array) noexcept {
    if (array == nullptr) return false;
    if (vxGetClassID(array) == vxClassID::Char)
        return vxGetM(array) == 1 || (vxGetM(array) == 0 && vxGetN(array) == 0);
    StringPtr s = getString(array);
    return s && s->numel() == 1 && !s->isMissing(0);
}

std::u16string getScalarText(const vxArray* array) {
    using foundation::core::except::Exception;
    if (isNonMissingScalarText(array)) {
        if (vxGetClassID(array) == vxClassID::Char) return std::u16string(vxGetChars(array));
        return *getString(array)->at(0);
    }
    if (isMissingScalarString(array)) throw Exception<TOLVEN::string::MissingNotSupported>(TOLVEN::string::MissingNotSupported());
    throw Exception<TOLVEN::string::MustBeStringScalarOrCharacterVector>(
        TOLVEN::string::MustBeStringScalarOrCharacterVector());
}

StringPtr createStringArray(std::u16string_view text) {
    StringPtr s(new String(1, 1));
    s->set(0, std::u16string(text));
    return s;
}

StringPtr createStringArray(const std::vector<std::u16string>& texts) {
    StringPtr s(texts.empty() ? new String(0, 0) : new String(1, texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) s->set(i, texts[i]);
    return s;
}

StringPtr createStringArray(std::size_t rows, std::size_t cols) { return StringPtr(new String(rows, cols)); }

vxArrayPtr make_String(StringPtr strings) { return Harnvale_make_string_array(std::move(strings)); }

}  // namespace Harnvale::String
