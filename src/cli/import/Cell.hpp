#pragma once
#include <cstdint>
#include <string_view>

namespace tolven::cli::import {

// One converted value on its way to a writer; the text is borrowed for the length of one row.
struct Cell {
    enum class Kind : std::uint8_t {
        Missing,  // no value: empty in CSV, null in JSON
        Number,   // decimal text that is a valid JSON number
        Text,
    };
    Kind kind = Kind::Missing;
    std::string_view text;
};

}  // namespace tolven::cli::import
