#pragma once
// Assembly of the result structure handed to the host.

#include <optional>
#include <string>
#include <vector>

#include "detection/Table.hpp"
#include "host/String.hpp"
#include "host/vxArray.hpp"

namespace tolven::io::xml::detection::strategy {

// The values of the seven result fields.
struct ImportOptionsFields {
    bool table_detected = false;
    std::optional<Selector> table_selector;  // none: a 1-by-1 "" string
    std::optional<Selector> row_selector;    // none: a 1-by-1 "" string
    std::vector<std::u16string> variable_names;      // 1-by-N; 0-by-0 when empty
    std::vector<std::u16string> variable_types;
    std::vector<std::u16string> variable_selectors;
    Harnvale::String::StringPtr registered_namespaces;  // N-by-2
};

// The field names, in the order they are added.
inline const std::vector<const char*>& import_options_field_order() {
    static const std::vector<const char*> order{"TableDetected",  "TableSelector",     "RowSelector",
                                                "VariableNames",  "VariableTypes",     "VariableSelectors",
                                                "RegisteredNamespaces"};
    return order;
}

// A 1-by-1 host structure holding fields, added in field_order (the names of import_options_field_order()).
vxArrayPtr make_import_options_struct(const ImportOptionsFields& fields,
                                      const std::vector<const char*>& field_order = import_options_field_order());

}  // namespace tolven::io::xml::detection::strategy
