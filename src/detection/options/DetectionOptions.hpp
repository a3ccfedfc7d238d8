#pragma once
// The fifteen detection hints and import settings, read once from the host structure and never changed.

#include <iosfwd>
#include <string>
#include <vector>

#include "host/String.hpp"
#include "host/vxArray.hpp"

namespace tolven::io::xml::detection::options {

struct DetectionOptions {
    std::vector<std::u16string> VariableSelectors;
    std::vector<std::u16string> VariableNodeNames;
    std::u16string TableSelector;
    std::u16string TableNodeName;
    std::u16string RowSelector;
    std::u16string RowNodeName;
    std::u16string AttributeSuffix;
    std::u16string DateLocale;
    bool ImportAttributes = true;
    bool DetectNamespaces = true;
    // Shared with every copy of the record; null when the host gave no string array.
    Harnvale::String::StringPtr RegisteredNamespaces;
    std::u16string ExponentCharacter;
    std::u16string DecimalSeparator;
    std::u16string ThousandsSeparator;
    bool TrimNonnumeric = false;
};

// The record as the diagnostic log prints it.
std::ostream& operator<<(std::ostream& out, const DetectionOptions& options);

}  // namespace tolven::io::xml::detection::options
