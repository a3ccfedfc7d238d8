#pragma once
// Turning the profile of a candidate into its score.

#include <cstddef>
#include <vector>

#include "tables/ColumnProfile.hpp"
#include "tables/TableCandidate.hpp"

namespace tolven::tables {

// The score of a candidate of kind with `rows` rows whose columns, merged-away share and prose share are
// given; shape is the factor of the candidate's kind.
CandidateScore make_score(CandidateKind kind, std::size_t rows, const TableProfile& profile, double prose,
                          double shape);

}  // namespace tolven::tables
