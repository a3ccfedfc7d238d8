#pragma once
#include "cli/import/OutputStream.hpp"
#include "cli/import/TableWriter.hpp"

namespace tolven::cli::import {

// Delimited text in UTF-8: a header line of the column names, then one line per row, each ending in
// "\n". A field holding the separator, a double quote, a line feed or a carriage return is enclosed in
// double quotes with its quotes doubled (RFC 4180). A missing value is an empty field.
// separator ',' gives CSV, '\t' TSV.
class CsvWriter : public TableWriter {
public:
    CsvWriter(OutputStream& out, char separator);
    void begin(const std::vector<std::string>& column_names) override;
    void write_row(std::span<const Cell> cells) override;
    void end() override;

private:
    void field(std::string_view text);
    OutputStream& out_;
    char separator_;
};

}  // namespace tolven::cli::import
