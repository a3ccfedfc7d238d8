#pragma once
// Rendering of detection results and errors.

#include <iosfwd>
#include <string>

#include "cli/DetectionResult.hpp"
#include "host/except/Exception.hpp"

namespace tolven::cli {

// For people: the selectors, one aligned line per variable (name, type, selector), the namespaces.
void write_text(std::ostream& out, const DetectionResult& result);
// {"TableDetected", "TableSelector", "RowSelector", "VariableNames", "VariableTypes", "VariableSelectors",
//  "RegisteredNamespaces"} as one JSON object and a line break.
void write_json(std::ostream& out, const DetectionResult& result);
// {"Error": {"Identifier", "Arguments", "Message"}} and a line break.
void write_json_error(std::ostream& out, const foundation::core::except::IMsgIDException& error);
// "tolven-xml: error: <message> (<identifier>)" and a line break.
void write_text_error(std::ostream& out, const foundation::core::except::IMsgIDException& error);

}  // namespace tolven::cli
