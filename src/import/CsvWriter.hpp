#pragma once
#include <string>
#include <string_view>

#include "import/OutputStream.hpp"
#include "import/TableWriter.hpp"

namespace tolven::import {

// Delimited text in UTF-8: a header line of the column names, then one line per row, each ending in
// line_end ("\n", or "\r\n" as RFC 4180 has it). A field holding the separator, a double quote, a
// line feed or a carriage return is enclosed in double quotes with its quotes doubled (RFC 4180). A
// missing value is an empty field; the several values of a list are joined by "; " into one field.
// separator ',' gives CSV, '\t' TSV; another line_end throws std::invalid_argument.
class CsvWriter : public TableWriter {
public:
    CsvWriter(OutputStream& out, char separator, std::string_view line_end = "\n");
    void begin(const std::vector<Column>& columns) override;
    void write_row(std::span<const Cell> cells) override;
    void end() override;

private:
    // A field through the stream's own checks of room, for one too large to write in place.
    void field(std::string_view text);
    std::string_view joined(std::span<const Cell> items);
    OutputStream& out_;
    std::string joined_;
    char separator_;
    char line_end_[2];  // written whole, counted for line_end_size_ bytes
    std::size_t line_end_size_;
};

}  // namespace tolven::import
