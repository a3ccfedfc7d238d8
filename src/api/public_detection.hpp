#pragma once
#include "import/DetectionResult.hpp"
#include "tolven/detect.hpp"

namespace tolven::api {

// The detection result in the public types.
xml::Detection public_detection(const import::DetectionResult& result);

}  // namespace tolven::api
