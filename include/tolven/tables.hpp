#pragma once
// Every table a document may hold, the likeliest first: for when the table detect() finds is not
// the one wanted. Hints::table picks one of them for detect() and read().

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tolven/options.hpp"

namespace tolven::xml {

// One candidate table, the fields of `tolven-xml tables --format json`.
struct TableCandidate {
    std::size_t rank = 0;  // its place in the list, from 1; Hints::table = rank selects it
    std::string table_selector;
    std::string row_selector;                 // empty for a table without row elements
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::vector<std::string> variable_names;  // as detect() names them with Hints::table = rank
    // The command-line options that select it without --table ({"--row-selector", "/a/b"}); empty
    // for the table detect() finds without hints.
    std::vector<std::string> hint;
    bool builtin = false;  // the table detect() finds without hints
    bool weak = false;     // probably not a table: prose, a list of words, one-off records, mostly empty
    std::vector<std::pair<std::string, std::string>> namespaces;  // (prefix, URI) the selectors use
};

// The candidate tables of the whole document, best first (at most 30; the one detect() finds is
// always among them), found with the import settings of hints; its detection hints and table are
// ignored. Throws Error as detect() does. Safe to call on several threads at once.
std::vector<TableCandidate> tables(const Source& source, const Hints& hints = {});

}  // namespace tolven::xml
