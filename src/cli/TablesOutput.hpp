#pragma once
// Rendering of the candidate tables of a document.

#include <cstddef>
#include <iosfwd>
#include <optional>

#include "tables/TableListing.hpp"

namespace tolven::cli {

// One aligned line per candidate: rank, rows, columns, where the rows are, the column names, and
// whether it is the builtin's pick or probably not a table; then how to pick one.
// only: list just that candidate (0-based).
void write_tables_text(std::ostream& out, const tables::TableList& list, std::optional<std::size_t> only = {});
// {"Tables": [{"Rank", "TableSelector", "RowSelector", "Rows", "Columns", "VariableNames", "Hint",
//  "Builtin", "Weak", "RegisteredNamespaces"}, ...]} and a line break.
void write_tables_json(std::ostream& out, const tables::TableList& list, std::optional<std::size_t> only = {});

}  // namespace tolven::cli
