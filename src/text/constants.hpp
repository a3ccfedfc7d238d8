#pragma once
// Fixed text tables shared by value classification, conversion and the detection layer.
// All are compile-time constants, so no start-up work and no allocation.

#include <array>
#include <string_view>

namespace tolven::io::text::constants {

inline constexpr std::u16string_view whitespace = u" \t\n\r";
inline constexpr std::array<std::u16string_view, 5> xpath_punctuation = {u"/", u"@", u"[", u"]", u":"};
inline constexpr std::u16string_view blanks = u" \b\t";
inline constexpr std::u16string_view exponent_characters = u"eEdD";
inline constexpr std::u16string_view digits = u"0123456789";
inline constexpr std::array<std::u16string_view, 4> line_breaks = {u" ", u"\n", u"\r", u"\r\n"};
inline constexpr std::array<std::u16string_view, 6> special_numbers = {u"NaN", u"Inf",  u"inf",
                                                                       u"-inf", u"nan", u"-nan"};
inline constexpr std::u16string_view hexadecimal_prefix = u"0X";
inline constexpr std::u16string_view binary_prefix = u"0B";
inline constexpr std::u16string_view wide_whitespace = u" \t\n\v\f\r";
// Longest first: the first format's group count is the most a duration may have.
inline constexpr std::array<std::u16string_view, 4> duration_formats = {u"dd:hh:mm:ss", u"hh:mm:ss", u"hh:mm",
                                                                        u"mm:ss"};
inline constexpr std::array<std::u16string_view, 17> type_names = {
    u"double", u"single", u"uint8",    u"int8",     u"uint16",      u"int16",   u"uint32", u"int32", u"uint64",
    u"int64",  u"auto",   u"datetime", u"duration", u"categorical", u"logical", u"string", u"char"};
// Characters a number may start with, and those it may hold after its first character.
inline constexpr std::u16string_view number_characters = u"0123456789+-.";
inline constexpr std::u16string_view number_leading_characters = u"123456789+-.";

}  // namespace tolven::io::text::constants
