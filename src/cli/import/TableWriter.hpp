#pragma once
#include <span>
#include <string>
#include <vector>

#include "cli/import/Cell.hpp"

namespace tolven::cli::import {

class OutputStream;

// Writes a table in one output format. Calls: begin once, write_row per row, end once.
class TableWriter {
public:
    virtual ~TableWriter() = default;
    virtual void begin(const std::vector<std::string>& column_names) = 0;
    virtual void write_row(std::span<const Cell> cells) = 0;
    virtual void end() = 0;
};

}  // namespace tolven::cli::import
