#pragma once
#include <span>
#include <string>
#include <vector>

#include "import/Cell.hpp"
#include "import/Column.hpp"

namespace tolven::import {

class OutputStream;

// Writes a table in one output format. Calls: begin once, write_row per row, end once. begin
// comes once the first rows have decided how each column reads, so the columns it is given carry
// the types they are written as (a number column with leading zeros is "string").
class TableWriter {
public:
    virtual ~TableWriter() = default;
    virtual void begin(const std::vector<Column>& columns) = 0;
    virtual void write_row(std::span<const Cell> cells) = 0;
    virtual void end() = 0;
};

}  // namespace tolven::import
