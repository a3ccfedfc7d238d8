#pragma once
#include "cli/import/OutputStream.hpp"
#include "cli/import/TableWriter.hpp"

namespace tolven::cli::import {

// One JSON object per row and line, keys in column order: numbers as JSON numbers, text as strings,
// missing values as null.
class JsonLinesWriter : public TableWriter {
public:
    explicit JsonLinesWriter(OutputStream& out) : out_(out) {}
    void begin(const std::vector<std::string>& column_names) override;
    void write_row(std::span<const Cell> cells) override;
    void end() override {}

protected:
    // The row as one object, without a line break.
    void write_object(std::span<const Cell> cells);
    OutputStream& out_;

private:
    std::vector<std::string> keys_;  // each written once as `"name":`, with the comma before all but the first
};

}  // namespace tolven::cli::import
