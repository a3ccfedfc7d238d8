#pragma once
// The caller's hints as the hint structure detection reads.

#include "host/vxArray.hpp"
#include "tolven/options.hpp"

namespace tolven::api {

// A structure with all fifteen fields filled from hints (UTF-8 text becomes UTF-16).
vxArrayPtr make_hint_struct(const xml::Hints& hints);

}  // namespace tolven::api
