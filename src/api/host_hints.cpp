#include "api/host_hints.hpp"

#include "host/values.hpp"

namespace tolven::api {

namespace {

void set_field(vxArray* hints, const char* name, vxArrayPtr value) {
    vxAddField(hints, name);
    vxSetField(hints, 0, name, value.release());
}

}  // namespace

vxArrayPtr make_hint_struct(const xml::Hints& h) {
    vxArrayPtr hints = do_create_struct();
    set_field(hints.get(), "TableNodeName", host::make_text(h.table_node_name));
    set_field(hints.get(), "RowNodeName", host::make_text(h.row_node_name));
    set_field(hints.get(), "VariableNodeNames", host::make_text_list(h.variable_node_names));
    set_field(hints.get(), "TableSelector", host::make_text(h.table_selector));
    set_field(hints.get(), "RowSelector", host::make_text(h.row_selector));
    set_field(hints.get(), "VariableSelectors", host::make_text_list(h.variable_selectors));
    set_field(hints.get(), "AttributeSuffix", host::make_text(h.attribute_suffix));
    set_field(hints.get(), "DateLocale", host::make_text(h.date_locale));
    set_field(hints.get(), "ImportAttributes", host::make_logical(h.import_attributes));
    set_field(hints.get(), "DetectNamespaces", host::make_logical(h.detect_namespaces));
    set_field(hints.get(), "RegisteredNamespaces", host::make_text_pairs(h.registered_namespaces));
    set_field(hints.get(), "DecimalSeparator", host::make_text(h.decimal_separator));
    set_field(hints.get(), "ThousandsSeparator", host::make_text(h.thousands_separator));
    set_field(hints.get(), "ExponentCharacter", host::make_text(h.exponent_character));
    set_field(hints.get(), "TrimNonnumeric", host::make_logical(h.trim_nonnumeric));
    return hints;
}

}  // namespace tolven::api
