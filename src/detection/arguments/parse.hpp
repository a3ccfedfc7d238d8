#pragma once
#include "detection/options/DetectionOptions.hpp"
#include "host/vxArray.hpp"
#include "xml/vcos/DocWrapper.hpp"

// The host's array type, as the builtin's inputs arrive.
using Arguments = vxArray;

namespace tolven::io::xml::detection::arguments {

struct ParsedArguments {
    // Not owned: the host's document object outlives the call.
    common::vcos::DocWrapper* document = nullptr;
    options::DetectionOptions options;
};

// Reads prhs[0] (the document object) and prhs[1] (the hint structure).
ParsedArguments parse(const Arguments** prhs);

}  // namespace tolven::io::xml::detection::arguments
