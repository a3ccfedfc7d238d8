#pragma once
// Internal bridge between host arrays and string arrays; not for use outside src/host.
#include "host/String.hpp"

vxArrayPtr Harnvale_make_string_array(Harnvale::String::StringPtr strings);
Harnvale::String::StringPtr Harnvale_get_string_array(const vxArray* array) noexcept;
