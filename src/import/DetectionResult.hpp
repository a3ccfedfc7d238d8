#pragma once
// The result structure of detect, read back into plain UTF-8 values for output and import.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/vxArray.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::import {

struct Variable {
    std::string name;
    std::string type;
    std::string selector;
};

struct DetectionResult {
    bool table_detected = false;
    std::string table_selector;
    std::string row_selector;
    std::vector<Variable> variables;
    std::vector<std::pair<std::string, std::string>> namespaces;  // (prefix, URI)
};

// Reads the seven fields of the structure detect returns.
DetectionResult read_result(const vxArray* result);

// Calls detect exactly as the host does: input 1 the document object, input 2 the hint structure.
DetectionResult run_detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document, const vxArray* hints);

}  // namespace tolven::import
