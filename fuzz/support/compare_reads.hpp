#pragma once
// The property both fuzz targets check: a document read as a tree and read as a stream gives the
// same CSV, or the same error.

#include <string_view>

#include "host/vxArray.hpp"

namespace tolven::fuzzing {

// Reads document with hints through both paths and aborts, printing both outcomes, when they
// differ or when either meets an internal error. Also streams it from a small sample, which may
// detect differently but must not crash.
void require_same_reads(std::string_view document, const vxArray* hints);

// Mutes what the library would print: the diagnostic log and libxml2's own messages.
void quiet_library();

}  // namespace tolven::fuzzing
