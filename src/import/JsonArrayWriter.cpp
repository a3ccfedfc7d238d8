#include "import/JsonArrayWriter.hpp"

namespace tolven::import {

void JsonArrayWriter::begin(const std::vector<Column>& columns) {
    JsonLinesWriter::begin(columns);
    out_.put('[');
}

void JsonArrayWriter::write_row(std::span<const Cell> cells) {
    out_.append(first_ ? "\n" : ",\n");
    first_ = false;
    write_object(cells);
}

void JsonArrayWriter::end() { out_.append(first_ ? "]\n" : "\n]\n"); }

}  // namespace tolven::import
