#pragma once
#include "detection/options/DetectionOptions.hpp"

// The host structure of detection hints.
using VxDetectionOptions = vxArray;

namespace tolven::io::xml::detection::options {

// Reads the fifteen fields of element 1 of the hint structure.
// Raises "TOLVEN:io:xml:common:UnknownError" when hints is not a non-empty struct or lacks a field,
// and "TOLVEN:string:MissingNotSupported" for a missing element inside a string list.
DetectionOptions make_detection_options(const VxDetectionOptions* hints);

}  // namespace tolven::io::xml::detection::options
