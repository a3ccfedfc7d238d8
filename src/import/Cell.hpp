#pragma once
#include <cstdint>
#include <span>
#include <string_view>

namespace tolven::import {

// One converted value on its way to a writer; the text is borrowed for the length of one row.
struct Cell {
    enum class Kind : std::uint8_t {
        Missing,  // no value: empty in CSV, null in JSON
        Number,   // decimal text that is a valid JSON number
        Text,
        List,     // the several values a row holds for the column, in items (none of them a List)
    };
    Kind kind = Kind::Missing;
    std::string_view text;
    std::span<const Cell> items;
};

}  // namespace tolven::import
