#include "text/ConvertTolvenTypeToString.hpp"

#include <stdexcept>
#include <string>

#include "text/constants.hpp"

namespace tolven::io::text {

namespace {
// Position of each type's name in constants::type_names.
int name_index(TolvenType type) {
    switch (type) {
        case TolvenType::Double: return 0;
        case TolvenType::Single: return 1;
        case TolvenType::UInt8: return 2;
        case TolvenType::Int8: return 3;
        case TolvenType::UInt16: return 4;
        case TolvenType::Int16: return 5;
        case TolvenType::UInt32: return 6;
        case TolvenType::Int32: return 7;
        case TolvenType::UInt64: return 8;
        case TolvenType::Int64: return 9;
        case TolvenType::Auto: return 10;
        case TolvenType::Datetime: return 11;
        case TolvenType::Duration: return 12;
        case TolvenType::Categorical: return 13;
        case TolvenType::Logical: return 14;
        case TolvenType::String:
        case TolvenType::Empty: return 15;
        case TolvenType::Char: return 16;
    }
    return -1;
}
}  // namespace

std::u16string ConvertTolvenTypeToString(TolvenType type) {
    const int index = name_index(type);
    if (index < 0) {
        throw std::invalid_argument("not a variable type: " + std::to_string(static_cast<unsigned>(type)));
    }
    return std::u16string(constants::type_names[static_cast<std::size_t>(index)]);
}

}  // namespace tolven::io::text
