#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "text/TypeAnalyzerOptions.hpp"
#include "text/enums.hpp"
#include "text/typedetection/classify.hpp"

namespace tolven::io::text::typedetection {

// The type of a variable voted from its samples (UTF-8 views into the document), classifying at most
// `limit` non-empty ones; empty samples are classified but do not count toward the limit. The type
// with most votes wins, ties going to the type seen first; empty samples win only when nothing else
// was seen, and then, like an empty list, give TolvenType::String. Throws std::bad_alloc only.
TolvenType detect_variable_type(const TypeAnalyzerOptions& options, const std::vector<std::string_view>& samples,
                                std::size_t limit);

}  // namespace tolven::io::text::typedetection
