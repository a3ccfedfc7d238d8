#pragma once
// Rendering of detection results and errors.

#include <iosfwd>
#include <string>
#include <vector>

#include "import/DetectionResult.hpp"
#include "host/except/Exception.hpp"

namespace tolven::cli {

using import::DetectionResult;

// Spaces that pad text to width (in display columns), plus the two that separate columns.
std::string padding(const std::string& text, std::size_t width);

// For people: the selectors, one aligned line per variable (its name, the column name read gives it,
// its type and its selector), the namespaces. column_names has one entry per variable.
void write_text(std::ostream& out, const DetectionResult& result, const std::vector<std::string>& column_names);
// {"TableDetected", "TableSelector", "RowSelector", "VariableNames", "VariableTypes", "VariableSelectors",
//  "RegisteredNamespaces"} as one JSON object and a line break.
void write_json(std::ostream& out, const DetectionResult& result);
// {"Error": {"Identifier", "Arguments", "Message"}} and a line break. message, when given, replaces
// the catalog's text (the same error in the user's words).
void write_json_error(std::ostream& out, const foundation::core::except::IMsgIDException& error,
                      const std::string& message = {});
// "tolven-xml: error: <message> (<identifier>)" and a line break.
void write_text_error(std::ostream& out, const foundation::core::except::IMsgIDException& error,
                      const std::string& message = {});

// Writes text to standard output (after whatever std::cout holds). Raises
// "TOLVEN:import:OutputNotWritable" ("<stdout>", reason) when it does not take it all.
void write_standard_output(const std::string& text);
// An error as the format wants it: JSON on standard output, else text on standard error; when
// standard output refuses the JSON, the text goes to standard error after all.
void report_error(const foundation::core::except::IMsgIDException& error, bool json, const std::string& message = {});

}  // namespace tolven::cli
