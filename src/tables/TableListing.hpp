#pragma once
// The candidates of a TableList as they are shown: what the builtin gives for each, and how to
// select it. The command line prints these; the library returns them.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tables/TableList.hpp"

namespace tolven::tables {

struct ListedTable {
    std::size_t rank = 0;  // from 1, what --table takes
    std::string table_selector;
    std::string row_selector;
    std::size_t rows = 0;
    std::vector<std::string> variable_names;
    std::vector<std::string> hint;  // the options that select it; empty for the builtin's pick
    bool builtin = false;
    bool weak = false;
    std::vector<std::pair<std::string, std::string>> namespaces;  // (prefix, URI)
};

// Candidate index (0-based) of list. A candidate the builtin raises an error for has its rows and
// hint only (the listing goes on; --table reports the error itself).
ListedTable listed_table(const TableList& list, std::size_t index);

// Every candidate of list, best first.
std::vector<ListedTable> listed_tables(const TableList& list);

}  // namespace tolven::tables
