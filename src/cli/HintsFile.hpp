#pragma once
#include <string>

#include "host/vxArray.hpp"

namespace tolven::cli {

// Reads a JSON object as the hint structure, field by field: a string becomes a string scalar,
// null a missing string, a list of strings (or nulls) a 1-by-N string array, a list of
// [prefix, uri] pairs an N-by-2 string array, true/false a logical, a number a double.
// Raises "TOLVEN:cli:InvalidHintsFile" (path, reason) when the file cannot be read, is not JSON,
// is not an object, or holds a value of another kind.
vxArrayPtr read_hints_file(const std::string& path);

}  // namespace tolven::cli
