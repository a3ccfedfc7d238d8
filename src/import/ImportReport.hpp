#pragma once
// What a person should know once an import is done, one line per column and matter: notes on
// decisions they may want to change, warnings on values not written as the column's type or not
// written at all. The lines carry no prefix; the command line adds "tolven-xml: note: " and
// "tolven-xml: warning: ".

#include <string>
#include <vector>

#include "import/RowSink.hpp"

namespace tolven::import {

std::vector<std::string> import_notes(const RowSink& sink);
std::vector<std::string> import_warnings(const RowSink& sink);

}  // namespace tolven::import
