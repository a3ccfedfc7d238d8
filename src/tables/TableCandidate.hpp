#pragma once
// One table a document may hold, how it is selected, and how much it looks like the table a
// person wants.

#include <cstddef>
#include <string>
#include <vector>

#include "tables/CandidateHint.hpp"

namespace tolven::tables {

enum class CandidateKind {
    Rows,        // repeated elements, each one row (under one parent or, taken together, under several)
    SideBySide,  // names repeated side by side under one parent: row i is the i-th of each
    Cells,       // rows of like-named cells, one column per position
    Keyed,       // rows of key/value pairs, one column per key
};

// What ranking weighs, each a named factor so that a ranking can be read and explained.
struct CandidateScore {
    double rows = 0;        // log2(1 + rows): more rows, more data, with diminishing returns
    double breadth = 0;     // log2(1 + useful columns): columns weighted by fill and by how much they vary
    double fill = 0;        // mean share of rows that have a value, over the fuller half of the columns
    double typed = 0;       // share of full, varying columns holding numbers, dates or durations
    double collapse = 0;    // share of the rows' child elements no column reaches (repeats merged away)
    double prose = 0;       // share of sampled rows holding mixed text and markup
    double running = 0;     // share of full columns holding running text (a dozen words or more a value)
    double shape = 1;       // a factor for how the rows are formed (cells with a header, side by side, ...)
    double pairs = 1;       // below 1 for name/value lists (settings rather than records)
    bool single = false;    // at most one full column: a list rather than a table
    bool single_text = false;  // that one column holds words, not numbers or dates
    bool few_rows = false;  // fewer than three rows

    // Everything multiplied into one number; higher is better.
    double total() const;
    // Probably not a table: prose, a list of words, one-off records, or columns that are mostly empty.
    bool weak() const;
};

struct TableCandidate {
    CandidateKind kind = CandidateKind::Rows;
    std::string table_selector;  // the element holding the rows, when there is one
    std::string row_selector;    // empty for side-by-side tables
    std::size_t rows = 0;
    CandidateHint hint;
    // Cells and keyed rows: the column names (from the header or the keys) and their selectors,
    // which the builtin's variables are renamed to and read with.
    std::vector<std::string> column_names;
    CandidateScore score;
    bool builtin = false;  // the builtin's own pick
    std::size_t order = 0;  // where its first row lies in the document, for ties
};

}  // namespace tolven::tables
