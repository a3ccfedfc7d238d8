#include "cli/import/CsvWriter.hpp"

namespace tolven::cli::import {

CsvWriter::CsvWriter(OutputStream& out, char separator)
    : out_(out), separator_(separator) {}

void CsvWriter::begin(const std::vector<std::string>& column_names) {
    for (std::size_t i = 0; i < column_names.size(); ++i) {
        if (i > 0) out_.put(separator_);
        field(column_names[i]);
    }
    out_.put('\n');
}

void CsvWriter::write_row(std::span<const Cell> cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) out_.put(separator_);
        if (cells[i].kind == Cell::Kind::Text) field(cells[i].text);
        else out_.append(cells[i].text);  // numbers never need quotes; missing values are empty
    }
    out_.put('\n');
}

void CsvWriter::end() {}

void CsvWriter::field(std::string_view text) {
    // One pass over the text: find_first_of would search the set of specials at every character.
    bool plain = true;
    for (const char c : text) {
        if (c == separator_ || c == '"' || c == '\n' || c == '\r') {
            plain = false;
            break;
        }
    }
    if (plain) {
        out_.append(text);
        return;
    }
    out_.put('"');
    std::size_t start = 0;
    for (std::size_t q = text.find('"'); q != std::string_view::npos; q = text.find('"', q + 1)) {
        out_.append(text.substr(start, q + 1 - start));
        out_.put('"');
        start = q + 1;
    }
    out_.append(text.substr(start));
    out_.put('"');
}

}  // namespace tolven::cli::import
