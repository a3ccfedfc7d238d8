#pragma once
// The detection hint that makes the builtin find one candidate table, as command-line options and
// as the hint structure the builtin reads.

#include <string>
#include <vector>

#include "host/vxArray.hpp"

namespace tolven::tables {

struct CandidateHint {
    enum class Kind { None, TableSelector, RowSelector, VariableSelectors };
    Kind kind = Kind::None;  // None: the builtin finds the table without a hint
    std::vector<std::string> values;

    // The options as typed: {"--row-selector", "/a/b"}; a flag per value for --variable-selectors.
    std::vector<std::string> words() const;
};

// A copy of hints (a hint structure) whose six detection hints are replaced by hint; the import
// settings are kept as given.
vxArrayPtr with_hint(const vxArray* hints, const CandidateHint& hint);

// True when hints gives any of the six detection hints (an empty first list element gives none).
bool has_detection_hint(const vxArray* hints);

}  // namespace tolven::tables
