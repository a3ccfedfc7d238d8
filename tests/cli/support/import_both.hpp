#pragma once
// Runs the tree and the streaming importer on one document and a given detection result.

#include <cstdint>
#include <optional>
#include <string>

#include "cli/DetectionResult.hpp"

namespace tolven::testing {

struct ImportedCsv {
    std::string tree;
    std::string stream;
};

// The CSV each importer writes for xml with the result's selectors (all columns typed "string"
// unless the variables say otherwise), at most head rows.
ImportedCsv import_both(const std::string& xml, const cli::DetectionResult& result,
                        std::optional<std::uint64_t> head = std::nullopt);

}  // namespace tolven::testing
