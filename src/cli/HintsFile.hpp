#pragma once
#include "cli/HintOptions.hpp"

namespace tolven::cli {

// Reads the JSON file hints.hints_file into the fields of hints that the user did not give on the
// command line. The file is one object holding any of the fifteen hint fields by name:
//   strings for the names, selectors and settings; lists of strings for VariableNodeNames and
//   VariableSelectors; true/false for ImportAttributes, DetectNamespaces and TrimNonnumeric;
//   a list of [prefix, uri] pairs for RegisteredNamespaces; null for "not given".
// The output of detect --format json is a hints file too: its RowSelector becomes the RowSelector
// hint (its TableSelector the TableSelector hint when the table has no row elements, its
// VariableSelectors the hint when it has neither), and its RegisteredNamespaces are registered, so
// that the same table is found again; the import settings may be added beside its fields.
// Raises "TOLVEN:cli:InvalidHintsFile" (path, reason naming the field) when the file cannot be
// read, is not such an object, names an unknown field or holds a value of the wrong type.
void apply_hints_file(HintOptions& hints);

}  // namespace tolven::cli
