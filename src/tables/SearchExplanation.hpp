#pragma once
// Why the builtin's hint-free search took the table it took, or found none: for each level it
// searched, in its order, the clusters of repeated names and how each one scored against the
// threshold, in words.

#include <memory>
#include <string>
#include <vector>

#include "host/vxArray.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::tables {

// At most this many lines; a longer search ends with a line saying how many levels were left out.
inline constexpr std::size_t kMaxExplanationLines = 200;

// One line per level and cluster, as "/path: ..." sentences. hints gives the import settings.
std::vector<std::string> explain_search(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                        const vxArray* hints);

}  // namespace tolven::tables
