#pragma once
// Where the importers hand their rows: values are trimmed, converted by their column's type,
// counted and written.

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/import/TableWriter.hpp"
#include "cli/import/ValueConverter.hpp"

namespace tolven::cli::import {

// One value as an importer found it: whether the node exists, and its untrimmed text.
struct RawValue {
    bool present = false;
    std::string_view text;
};

struct Column {
    std::string name;  // the header
    std::string type;  // the detected type name
};

class RowSink {
public:
    // head: write at most this many rows. The writer and the options must outlive the sink.
    RowSink(std::vector<Column> columns, const io::text::typedetection::TypeAnalyzerOptions& options,
            TableWriter& writer, std::optional<std::uint64_t> head);

    // Writes the header.
    void begin();
    // Writes one row (one value per column). Returns false when no further row is wanted.
    bool accept(std::span<const RawValue> values);
    // True when the head limit is reached.
    bool full() const noexcept { return head_ && rows_ >= *head_; }
    void end();

    std::uint64_t rows() const noexcept { return rows_; }
    std::size_t column_count() const noexcept { return columns_.size(); }
    // The counts of missing (no node, or nothing to convert) and unconvertible values of column i.
    std::uint64_t missing(std::size_t i) const { return counts_[i].missing; }
    std::uint64_t unconvertible(std::size_t i) const { return counts_[i].unconvertible; }
    // Rows, columns and the counts per column, for people.
    void write_summary(std::ostream& out) const;

private:
    struct Counts {
        std::uint64_t missing = 0;
        std::uint64_t unconvertible = 0;
    };
    std::vector<Column> columns_;
    std::vector<ValueConverter> converters_;
    std::vector<Counts> counts_;
    std::vector<Cell> cells_;
    TableWriter& writer_;
    std::optional<std::uint64_t> head_;
    std::uint64_t rows_ = 0;
};

}  // namespace tolven::cli::import
