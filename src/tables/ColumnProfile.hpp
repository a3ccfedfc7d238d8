#pragma once
// What the ranking reads off a candidate's columns and rows: how full, how typed, how varied the
// columns are, how much of the rows no column reaches, and whether the rows are running text.

#include <libxml/tree.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "detection/Table.hpp"
#include "text/TypeAnalyzerOptions.hpp"

namespace tolven::tables {

struct ColumnProfile {
    std::string name;   // the local name (or key, or header text), for the name/value test
    double fill = 0;    // share of rows with a non-blank value
    bool typed = false;  // numbers, dates, durations or logicals, by the builtin's vote
    bool varies = false;  // more than one distinct value among the samples
    double unique = 0;    // distinct values per sample
    double words = 0;     // mean words per sample
    bool regular = false;  // numbers evenly spaced (ticks, grid lines, counters): laid out, not measured
    std::vector<std::size_t> hashes;  // of the samples in order, to spot a column that repeats another
};

// A column with non-blank values in `values` of `rows` rows; samples are some of those values.
ColumnProfile profile_column(std::string name, std::size_t values, std::size_t rows,
                             const std::vector<std::string_view>& samples,
                             const io::text::typedetection::TypeAnalyzerOptions& settings);

struct TableProfile {
    std::vector<ColumnProfile> columns;
    double collapse = 0;  // share of element occurrences below the rows that merge into an earlier one
};

// The variables of a table the builtin laid out over `rows` rows, in the builtin's counting.
TableProfile profile_table(const io::xml::detection::Table& table, std::size_t rows,
                           const io::text::typedetection::TypeAnalyzerOptions& settings);

// The share of rows (a sample of at most 50) that, themselves or in a child, hold text and elements
// side by side.
double prose_share(const std::vector<const xmlNode*>& rows);

}  // namespace tolven::tables
