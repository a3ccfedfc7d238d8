#include "import/JsonLinesWriter.hpp"

#include "import/json_text.hpp"

namespace tolven::import {

void JsonLinesWriter::begin(const std::vector<Column>& columns) {
    // The keys are the same in every row: escape them once.
    keys_.clear();
    for (std::size_t i = 0; i < columns.size(); ++i)
        keys_.push_back((i == 0 ? "{" : ",") + json_string(columns[i].name) + ":");
}

void JsonLinesWriter::write_row(std::span<const Cell> cells) {
    write_object(cells);
    out_.put('\n');
}

void JsonLinesWriter::write_object(std::span<const Cell> cells) {
    if (cells.empty()) {
        out_.append("{}");
        return;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        out_.append(keys_[i]);
        write_json_value(out_, cells[i]);
    }
    out_.put('}');
}

}  // namespace tolven::import
