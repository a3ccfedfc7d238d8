#include "detection/strategy/ImportOptionsStruct.hpp"

#include <stdexcept>
#include <string_view>

namespace tolven::io::xml::detection::strategy {

namespace hs = Harnvale::String;

namespace {

vxArrayPtr field_value(const ImportOptionsFields& f, std::string_view name) {
    auto selector = [](const std::optional<Selector>& s) {
        return hs::make_String(hs::createStringArray(s ? std::u16string_view(*s) : std::u16string_view()));
    };
    if (name == "TableDetected") {
        vxArrayPtr value = do_create_numeric(vxClassID::Logical, 1, 1);
        vxGetLogicals(value.get())[0] = f.table_detected;
        return value;
    }
    if (name == "TableSelector") return selector(f.table_selector);
    if (name == "RowSelector") return selector(f.row_selector);
    if (name == "VariableNames") return hs::make_String(hs::createStringArray(f.variable_names));
    if (name == "VariableTypes") return hs::make_String(hs::createStringArray(f.variable_types));
    if (name == "VariableSelectors") return hs::make_String(hs::createStringArray(f.variable_selectors));
    if (name == "RegisteredNamespaces")
        return hs::make_String(f.registered_namespaces ? f.registered_namespaces : hs::createStringArray(0, 2));
    throw std::logic_error("unknown result field " + std::string(name));
}

}  // namespace

vxArrayPtr make_import_options_struct(const ImportOptionsFields& fields, const std::vector<const char*>& field_order) {
    vxArrayPtr result = do_create_struct();
    for (const char* name : field_order) {
        vxArrayPtr value = field_value(fields, name);
        vxAddField(result.get(), name);
        vxSetField(result.get(), 0, name, value.release());
    }
    return result;
}

}  // namespace tolven::io::xml::detection::strategy
