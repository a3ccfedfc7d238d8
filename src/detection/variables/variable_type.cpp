#include "detection/variables/variable_type.hpp"

#include "text/ConvertTolvenTypeToString.hpp"
#include "text/typedetection/detect_variable_type.hpp"

namespace tolven::io::xml::detection::variables {

std::u16string detect_type_name(const text::typedetection::TypeAnalyzerOptions& settings,
                                const std::vector<std::string_view>& samples) {
    return text::ConvertTolvenTypeToString(
        text::typedetection::detect_variable_type(settings, samples, kTypeSampleLimit));
}

}  // namespace tolven::io::xml::detection::variables
