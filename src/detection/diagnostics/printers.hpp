#pragma once
// Text printers of the diagnostic dumps. Call them only when the debug bit is enabled.

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <vector>

#include "detection/options/DetectionOptions.hpp"

namespace tolven::io::xml::detection::diagnostics {

inline constexpr std::string_view kLineBreak = "\n";
inline constexpr std::string_view kIndent = "    ";

// Text between double quotes (UTF-16 converted to UTF-8).
std::string print_quoted(std::u16string_view text);
// "[" items joined by ", " "]", each item quoted.
std::string print_list(const std::vector<std::u16string>& texts);
std::string print_bool(bool value);
// A node as its quoted name, the way every dump prints node names.
std::string print_node_name(const xmlNode* node);
// "[" quoted node names joined by ", " "]".
std::string print_node_list(const std::vector<const xmlNode*>& nodes);
// "\nDetectionOptions = \n{\n" one indented "Label: value,\n" per field "}".
std::string print_options(const options::DetectionOptions& options);

}  // namespace tolven::io::xml::detection::diagnostics
