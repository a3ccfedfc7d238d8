#pragma once
#include "import/OutputStream.hpp"
#include "import/TableWriter.hpp"

namespace tolven::import {

// One JSON object per row and line, keys in column order: numbers as JSON numbers, text as strings,
// missing values as null, lists as arrays.
class JsonLinesWriter : public TableWriter {
public:
    explicit JsonLinesWriter(OutputStream& out) : out_(out) {}
    void begin(const std::vector<Column>& columns) override;
    void write_row(std::span<const Cell> cells) override;
    void end() override {}

protected:
    // The row as one object, without a line break.
    void write_object(std::span<const Cell> cells);
    OutputStream& out_;

private:
    std::vector<std::string> keys_;  // each written once as `"name":`, with the comma before all but the first
};

}  // namespace tolven::import
