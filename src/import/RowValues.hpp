#pragma once
// The values the importers find for one row: per column the text of every node selected for it,
// in document order. Buffers keep their capacity from row to row.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::import {

class RowValues {
public:
    explicit RowValues(std::size_t width = 0) : columns_(width) {}

    std::size_t width() const noexcept { return columns_.size(); }
    // Empties every column, keeping the buffers.
    void clear() noexcept {
        for (auto& c : columns_) c.count = 0;
    }
    // Starts the next value of column and returns its text, empty, to be filled (in pieces if need be).
    // The reference holds until the next add to the same column.
    std::string& add(std::size_t column) {
        Column& c = columns_[column];
        if (c.count == c.texts.size()) c.texts.emplace_back();
        std::string& text = c.texts[c.count++];
        text.clear();
        return text;
    }
    // The k-th value of column, to append to while it is read.
    std::string& text(std::size_t column, std::size_t k) { return columns_[column].texts[k]; }

    // Nodes found for column in this row.
    std::size_t count(std::size_t column) const noexcept { return columns_[column].count; }
    std::string_view value(std::size_t column, std::size_t k) const noexcept { return columns_[column].texts[k]; }
    // Bytes of text held, to bound what is kept.
    std::size_t bytes() const noexcept;

private:
    struct Column {
        std::vector<std::string> texts;  // the first count hold this row's values
        std::size_t count = 0;
    };
    std::vector<Column> columns_;
};

}  // namespace tolven::import
