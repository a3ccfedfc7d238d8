#pragma once
#include <string>

namespace tolven::import {

// How a column is to be written, before its values are seen.
struct Column {
    std::string name;         // the header
    std::string type;         // the detected type name, or the one given by hand
    bool type_given = false;  // given by hand: kept whatever the values look like
    std::string date_format;  // a date format given by hand (DateFormat's letters); "" for none
};

}  // namespace tolven::import
