#include "host/vxArray.hpp"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <variant>
#include <vector>

#include "host/String.hpp"
#include "host/detail/string_arrays.hpp"

namespace {

struct StructData {
    std::vector<std::string> names;
    // One row of field values per element, in field order; null where never set.
    std::vector<std::vector<vxArray*>> values;
};

using Payload = std::variant<StructData, std::vector<bool>, std::vector<double>, std::u16string,
                             Harnvale::String::StringPtr, std::shared_ptr<vxObject>>;

}  // namespace

struct vxArray {
    vxClassID cls;
    std::size_t rows;
    std::size_t cols;
    std::atomic<std::size_t> references{1};
    Payload payload;
    // std::vector<bool> is packed; logical data is handed out as bool*, so it lives here.
    std::unique_ptr<bool[]> logicals;
};

namespace {

vxArrayPtr make_array(vxClassID cls, std::size_t rows, std::size_t cols, Payload payload) {
    auto* array = new vxArray{cls, rows, cols, 1, std::move(payload), nullptr};
    return vxArrayPtr(array);
}

StructData* struct_data(vxArray* array) {
    return array && array->cls == vxClassID::Struct ? &std::get<StructData>(array->payload) : nullptr;
}

const StructData* struct_data(const vxArray* array) {
    return array && array->cls == vxClassID::Struct ? &std::get<StructData>(array->payload) : nullptr;
}

std::ptrdiff_t field_index(const StructData& data, const char* name) {
    auto it = std::find(data.names.begin(), data.names.end(), name);
    return it == data.names.end() ? -1 : it - data.names.begin();
}

}  // namespace

namespace matrix::detail {
void vxDestroy_deleter::operator()(vxArray* array) const noexcept { destroyArray(array); }
}  // namespace matrix::detail

vxArrayPtr do_create_struct(std::size_t rows, std::size_t cols) {
    StructData data;
    data.values.resize(rows * cols);
    return make_array(vxClassID::Struct, rows, cols, std::move(data));
}

vxArrayPtr do_create_numeric(vxClassID cls, std::size_t rows, std::size_t cols) {
    if (cls == vxClassID::Logical) {
        auto array = make_array(cls, rows, cols, std::vector<bool>{});
        array->logicals = std::make_unique<bool[]>(rows * cols);
        return array;
    }
    if (cls == vxClassID::Double) return make_array(cls, rows, cols, std::vector<double>(rows * cols, 0.0));
    throw std::invalid_argument("do_create_numeric: class must be Logical or Double");
}

vxArrayPtr do_create_char(std::u16string_view text) {
    return text.empty() ? make_array(vxClassID::Char, 0, 0, std::u16string())
                        : make_array(vxClassID::Char, 1, text.size(), std::u16string(text));
}

vxArrayPtr do_create_char(std::u16string_view text, std::size_t rows, std::size_t cols) {
    if (text.size() != rows * cols) throw std::invalid_argument("do_create_char: text size must be rows*cols");
    return make_array(vxClassID::Char, rows, cols, std::u16string(text));
}

vxArrayPtr do_create_object(std::shared_ptr<vxObject> object) {
    return make_array(vxClassID::Object, 1, 1, std::move(object));
}

vxArrayPtr Harnvale_make_string_array(Harnvale::String::StringPtr strings) {
    const std::size_t rows = strings->rows();
    const std::size_t cols = strings->cols();
    return make_array(vxClassID::String, rows, cols, std::move(strings));
}

void destroyArray(vxArray* array) noexcept {
    if (array == nullptr) return;
    if (array->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (auto* data = struct_data(array)) {
        for (auto& element : data->values)
            for (vxArray* value : element) destroyArray(value);
    }
    delete array;
}

vxArray* vxShareArray(const vxArray* array) noexcept {
    auto* mutable_array = const_cast<vxArray*>(array);
    if (mutable_array) mutable_array->references.fetch_add(1, std::memory_order_relaxed);
    return mutable_array;
}

vxClassID vxGetClassID(const vxArray* array) noexcept { return array->cls; }
std::size_t vxGetM(const vxArray* array) noexcept { return array->rows; }
std::size_t vxGetN(const vxArray* array) noexcept { return array->cols; }
std::size_t vxGetNumberOfElements(const vxArray* array) noexcept { return array->rows * array->cols; }

const void* vxGetData(const vxArray* array) noexcept {
    if (array == nullptr || vxGetNumberOfElements(array) == 0) return nullptr;
    switch (array->cls) {
        case vxClassID::Logical: return array->logicals.get();
        case vxClassID::Double: return std::get<std::vector<double>>(array->payload).data();
        case vxClassID::Char: return std::get<std::u16string>(array->payload).data();
        default: return nullptr;
    }
}

bool* vxGetLogicals(vxArray* array) noexcept {
    return array && array->cls == vxClassID::Logical ? array->logicals.get() : nullptr;
}
const bool* vxGetLogicals(const vxArray* array) noexcept {
    return array && array->cls == vxClassID::Logical ? array->logicals.get() : nullptr;
}
double* vxGetDoubles(vxArray* array) noexcept {
    return array && array->cls == vxClassID::Double ? std::get<std::vector<double>>(array->payload).data() : nullptr;
}
std::u16string_view vxGetChars(const vxArray* array) noexcept {
    return array && array->cls == vxClassID::Char ? std::u16string_view(std::get<std::u16string>(array->payload))
                                                  : std::u16string_view();
}
vxObject* vxGetObject(const vxArray* array) noexcept {
    return array && array->cls == vxClassID::Object ? std::get<std::shared_ptr<vxObject>>(array->payload).get()
                                                    : nullptr;
}

Harnvale::String::StringPtr Harnvale_get_string_array(const vxArray* array) noexcept {
    return array && array->cls == vxClassID::String ? std::get<Harnvale::String::StringPtr>(array->payload)
                                                    : Harnvale::String::StringPtr();
}

std::size_t vxAddField(vxArray* array, const char* name) {
    StructData* data = struct_data(array);
    if (data == nullptr) throw std::invalid_argument("vxAddField: not a struct array");
    if (auto index = field_index(*data, name); index >= 0) return static_cast<std::size_t>(index);
    data->names.emplace_back(name);
    for (auto& element : data->values) element.push_back(nullptr);
    return data->names.size() - 1;
}

void vxSetField(vxArray* array, std::size_t element, const char* name, vxArray* value) {
    StructData* data = struct_data(array);
    if (data == nullptr) {
        destroyArray(value);
        throw std::invalid_argument("vxSetField: not a struct array");
    }
    const auto index = field_index(*data, name);
    if (index < 0 || element >= data->values.size()) {
        destroyArray(value);
        if (index < 0) throw std::invalid_argument(std::string("vxSetField: no field ") + name);
        throw std::out_of_range("vxSetField: element out of range");
    }
    vxArray*& slot = data->values[element][static_cast<std::size_t>(index)];
    destroyArray(slot);
    slot = value;
}

const vxArray* vxGetField(const vxArray* array, std::size_t element, const char* name) noexcept {
    const StructData* data = struct_data(array);
    if (data == nullptr || element >= data->values.size()) return nullptr;
    const auto index = field_index(*data, name);
    return index < 0 ? nullptr : data->values[element][static_cast<std::size_t>(index)];
}

std::size_t vxGetNumberOfFields(const vxArray* array) noexcept {
    const StructData* data = struct_data(array);
    return data ? data->names.size() : 0;
}

const char* vxGetFieldNameByNumber(const vxArray* array, std::size_t i) noexcept {
    const StructData* data = struct_data(array);
    return data && i < data->names.size() ? data->names[i].c_str() : nullptr;
}
