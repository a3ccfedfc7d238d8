#include "text/ConvertDetectionTypeToTolvenType.hpp"

namespace tolven::io::text {

TolvenType ConvertDetectionTypeToTolvenType(const textio::enums::ImportTypeID& type) noexcept {
    using textio::enums::ImportTypeID;
    switch (type) {
        case ImportTypeID::Number: return TolvenType::Double;
        case ImportTypeID::DateTime:
        case ImportTypeID::Date: return TolvenType::Datetime;
        case ImportTypeID::Duration: return TolvenType::Duration;
        case ImportTypeID::Hexadecimal:
        case ImportTypeID::Binary: return TolvenType::UInt64;
        case ImportTypeID::EmptyField: return TolvenType::Empty;
        case ImportTypeID::Text:
        case ImportTypeID::DurationShapedText:
        case ImportTypeID::MarkedText: return TolvenType::String;
    }
    return TolvenType::String;
}

}  // namespace tolven::io::text
