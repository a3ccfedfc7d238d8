#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace tolven::import {

// Header names for the variable names, in order: the leading "@" of an attribute is dropped; an
// attribute whose name then collides with another column's gets attribute_suffix appended; names
// still repeated get "_2", "_3", ... (the first free number) from their second occurrence on.
std::vector<std::string> make_column_names(const std::vector<std::string>& variable_names,
                                           std::string_view attribute_suffix);

}  // namespace tolven::import
