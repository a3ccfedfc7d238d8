#pragma once
// Host arrays made from plain UTF-8 values: how the command line and the public interface fill the
// hint structure detection reads.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/vxArray.hpp"

namespace tolven::host {

// A scalar string array holding value (UTF-8 in, UTF-16 held).
vxArrayPtr make_text(std::string_view value);
// A 1-by-n string array, one element per value.
vxArrayPtr make_text_list(const std::vector<std::string>& values);
// A 1-by-1 logical.
vxArrayPtr make_logical(bool value);
// An n-by-2 string array of (first, second) rows; 0-by-0 when there are none.
vxArrayPtr make_text_pairs(const std::vector<std::pair<std::string, std::string>>& pairs);

}  // namespace tolven::host
