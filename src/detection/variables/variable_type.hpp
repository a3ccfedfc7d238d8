#pragma once
// The type name reported for one variable, voted from its kept samples.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::io::xml::detection::variables {

// At most this many non-empty samples take part in the vote.
inline constexpr std::size_t kTypeSampleLimit = 250;

// The name of the type detected from samples under settings ("double", "datetime", "string", ...).
std::u16string detect_type_name(const text::typedetection::TypeAnalyzerOptions& settings,
                                const std::vector<std::string_view>& samples);

}  // namespace tolven::io::xml::detection::variables
