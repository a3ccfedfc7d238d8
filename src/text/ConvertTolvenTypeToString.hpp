#pragma once

#include <string>

#include "text/enums.hpp"

namespace tolven::io::text {

// The name of a variable type as the importer spells it ("double", "string", "datetime", ...).
// The empty marker is named "string", the name an all-empty variable is reported with.
// Throws std::invalid_argument for a value that is not a TolvenType enumerator.
std::u16string ConvertTolvenTypeToString(TolvenType type);

}  // namespace tolven::io::text
