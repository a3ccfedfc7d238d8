#pragma once
// What read reports when done: the rows, and per column its variable, type and value counts.

#include <iosfwd>
#include <string>
#include <vector>

#include "import/DetectionResult.hpp"
#include "import/RowSink.hpp"

namespace tolven::cli {

struct ReadReport {
    const import::RowSink& sink;
    const std::vector<import::Column>& columns;      // as written: unique names and types
    const std::vector<import::Variable>& variables;  // as detected, one per column
    std::vector<std::string> notes;
    std::vector<std::string> warnings;  // values not written as their column's type, or not all written
};

// For people: "tolven-xml: N rows, M columns", then one aligned line per column: the column name,
// the variable detect named, the type and each count.
void write_text_summary(std::ostream& out, const ReadReport& report);
// For scripts: {"Rows", "Columns": [{"Name", "Variable", "Type", "Selector", "Missing",
// "Unconvertible", "Repeated"}], "Notes": [...], "Warnings": [...]}
// on one line.
void write_json_summary(std::ostream& out, const ReadReport& report);

}  // namespace tolven::cli
