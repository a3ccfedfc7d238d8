#pragma once
// The two type vocabularies of text import: what one value looks like (ImportTypeID) and the
// type a whole variable is imported as (TolvenType). Both numberings are shared with the importer
// and must not change.

#include <cstdint>

namespace tolven::io::text::textio::enums {

// The detected kind of one value.
enum class ImportTypeID : std::uint8_t {
    Number = 1,               // decimal number, optionally with exponent and separators
    Text = 2,                 // anything no other test accepted
    DateTime = 3,             // a date that also carries a time (the text holds ":")
    EmptyField = 5,           // nothing left after trimming whitespace
    Date = 7,                 // a date without time
    Duration = 8,             // [+-]digits(:digits){1,3}[.digits]
    Hexadecimal = 9,          // "0x" followed by hexadecimal digits
    Binary = 10,              // "0b" followed by binary digits
    DurationShapedText = 11,  // colon groups that cannot be a duration: more than four, or a trailing ":"
    MarkedText = 12,          // text spanning several lines, or ending in "|"
};

}  // namespace tolven::io::text::textio::enums

namespace tolven::io::text {

// The type a variable is imported as.
enum class TolvenType : std::uint8_t {
    Double = 0,
    Single = 1,
    UInt8 = 2,
    Int8 = 3,
    UInt16 = 4,
    Int16 = 5,
    UInt32 = 6,
    Int32 = 7,
    UInt64 = 8,
    Int64 = 9,
    Auto = 10,
    Datetime = 11,
    Duration = 12,
    Categorical = 13,
    String = 14,  // also what an empty or all-empty variable is reported as
    Logical = 15,
    Char = 16,
    Empty = 18,   // an empty value; counted in votes, never reported
};

}  // namespace tolven::io::text
