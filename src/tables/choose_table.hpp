#pragma once
// The table detect and read use: what the builtin finds, or one candidate of the document's table
// list (--table N).

#include <cstddef>
#include <memory>

#include "host/vxArray.hpp"
#include "import/DetectionResult.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::tables {

// With number 0, what the builtin finds for hints. Otherwise what it gives for candidate number (1
// is the likeliest) of TableList, with hints' import settings; raises
// "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint" when hints gives a detection hint too,
// and "TOLVEN:import:NoSuchTable" (number, count, source) when the document has fewer candidates.
// Raises the builtin's errors.
import::DetectionResult choose_table(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                                     const vxArray* hints, std::size_t number);

}  // namespace tolven::tables
