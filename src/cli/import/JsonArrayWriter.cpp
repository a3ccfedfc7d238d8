#include "cli/import/JsonArrayWriter.hpp"

namespace tolven::cli::import {

void JsonArrayWriter::begin(const std::vector<std::string>& column_names) {
    JsonLinesWriter::begin(column_names);
    out_.put('[');
}

void JsonArrayWriter::write_row(std::span<const Cell> cells) {
    out_.append(first_ ? "\n" : ",\n");
    first_ = false;
    write_object(cells);
}

void JsonArrayWriter::end() { out_.append(first_ ? "]\n" : "\n]\n"); }

}  // namespace tolven::cli::import
