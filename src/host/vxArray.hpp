#pragma once
// The host value layer: reference-counted dynamic arrays of a few classes
// (struct, logical, double, char, string, object). Detection reads its hints
// from such arrays and returns its result as one.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct vxArray;

enum class vxClassID : std::uint8_t { Struct, Logical, Double, Char, String, Object };

// Something a host array of class Object can hold (an open document, for example).
class vxObject {
public:
    virtual ~vxObject() = default;
    // A short name of the object's kind, for messages.
    virtual std::string_view class_name() const noexcept = 0;
};

namespace matrix::detail {
// Drops one reference; the array is freed with its last reference.
struct vxDestroy_deleter {
    void operator()(vxArray* array) const noexcept;
};
}  // namespace matrix::detail

using vxArrayPtr = std::unique_ptr<vxArray, matrix::detail::vxDestroy_deleter>;

// A rows-by-cols struct array with no fields.
vxArrayPtr do_create_struct(std::size_t rows = 1, std::size_t cols = 1);
// A rows-by-cols array of class Logical or Double, zero-filled. Throws std::invalid_argument for other classes.
vxArrayPtr do_create_numeric(vxClassID cls, std::size_t rows, std::size_t cols);
// A char row vector holding text (0-by-0 when text is empty).
vxArrayPtr do_create_char(std::u16string_view text);
// A rows-by-cols char matrix; text holds rows*cols units in column-major order.
vxArrayPtr do_create_char(std::u16string_view text, std::size_t rows, std::size_t cols);
// A 1-by-1 array of class Object sharing the given object.
vxArrayPtr do_create_object(std::shared_ptr<vxObject> object);

// Drops one reference to array (null is allowed).
void destroyArray(vxArray* array) noexcept;
// Adds one reference and returns the same array.
vxArray* vxShareArray(const vxArray* array) noexcept;

vxClassID vxGetClassID(const vxArray* array) noexcept;
std::size_t vxGetM(const vxArray* array) noexcept;
std::size_t vxGetN(const vxArray* array) noexcept;
std::size_t vxGetNumberOfElements(const vxArray* array) noexcept;

// The raw data of a Logical, Double or Char array; null for other classes or no elements.
const void* vxGetData(const vxArray* array) noexcept;
// Logical data; null unless the array is Logical.
bool* vxGetLogicals(vxArray* array) noexcept;
const bool* vxGetLogicals(const vxArray* array) noexcept;
// Double data; null unless the array is Double.
double* vxGetDoubles(vxArray* array) noexcept;
// Char data in column-major order; empty unless the array is Char.
std::u16string_view vxGetChars(const vxArray* array) noexcept;
// The object of an Object array; null for other classes.
vxObject* vxGetObject(const vxArray* array) noexcept;

// Struct fields. Field names are ASCII identifiers; order is the order of addition.
// Adds a field to every element (values null) and returns its number; an existing field's number is returned as it is.
// Throws std::invalid_argument when array is not a struct.
std::size_t vxAddField(vxArray* array, const char* name);
// Sets the field of element `element` (0-based, column-major), taking ownership of value.
// Throws std::invalid_argument when array is not a struct or lacks the field, std::out_of_range for a bad element.
void vxSetField(vxArray* array, std::size_t element, const char* name, vxArray* value);
// The field's value on element `element`; null when array is not a struct, the element does not exist,
// the field is absent or was never set.
const vxArray* vxGetField(const vxArray* array, std::size_t element, const char* name) noexcept;
std::size_t vxGetNumberOfFields(const vxArray* array) noexcept;
// The name of field number i; null when out of range.
const char* vxGetFieldNameByNumber(const vxArray* array, std::size_t i) noexcept;
