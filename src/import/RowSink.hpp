#pragma once
// Where the importers hand their rows: values are trimmed, converted by their column's type,
// counted and written. The first rows are held back until they have decided how each column
// reads (the order of day and month, numbers with leading zeros as text); a value that does not
// convert is written as it stands, and counted.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/RowValues.hpp"
#include "import/TableWriter.hpp"
#include "import/ValueConverter.hpp"

namespace tolven::import {

class RowSink {
public:
    struct Settings {
        std::optional<std::uint64_t> head;  // write at most this many rows
        bool strict = false;                // a value that does not convert stops the import
        bool all_repeated = false;          // write every value a row holds for a column, not only the first
        // Rows held back at most before the columns' decisions are taken, and their bytes of text.
        std::size_t decision_rows = 10000;
        std::size_t decision_bytes = std::size_t{16} << 20;
    };

    // The writer and the options must outlive the sink. Throws std::invalid_argument for a column
    // whose type or date format is not usable (see ValueConverter).
    RowSink(const std::vector<Column>& columns, const io::text::typedetection::TypeAnalyzerOptions& options,
            TableWriter& writer, Settings settings);

    // Takes one row. Returns false when no further row is wanted. With strict, raises
    // "TOLVEN:import:UnconvertibleValue" (column, row, value, type) at the first value that does not
    // convert, before its row is written.
    bool accept(const RowValues& values);
    // True when the head limit is reached.
    bool full() const noexcept { return settings_.head && rows_ >= *settings_.head; }
    // Writes the rows still held back, then the end of the output. The writer is begun once the
    // held rows have decided the columns' types, so the first of accept() and end() to decide begins it.
    void end();

    std::uint64_t rows() const noexcept { return rows_; }
    std::size_t column_count() const noexcept { return columns_.size(); }
    const std::string& name(std::size_t i) const { return columns_[i].name; }
    // The type column i is written as (a number column whose values carry leading zeros is "string").
    const std::string& type(std::size_t i) const { return converters_[i].type(); }
    bool all_repeated() const noexcept { return settings_.all_repeated; }

    // Per column: rows without a value (no node, or nothing but blanks); values that did not convert
    // and were written as they stand; rows that held more than one value.
    std::uint64_t missing(std::size_t i) const { return counts_[i].missing; }
    std::uint64_t unconvertible(std::size_t i) const { return counts_[i].unconvertible; }
    std::uint64_t repeated(std::size_t i) const { return counts_[i].repeated; }
    // The row (from 1) and text of the first value of column i that did not convert; none when all did.
    const std::optional<std::pair<std::uint64_t, std::string>>& first_unconvertible(std::size_t i) const {
        return counts_[i].first_unconvertible;
    }
    // What was decided for column i that a person may want to change; "" when nothing.
    const std::string& note(std::size_t i) const { return converters_[i].note(); }

private:
    struct Counts {
        std::uint64_t missing = 0;
        std::uint64_t unconvertible = 0;
        std::uint64_t repeated = 0;
        std::optional<std::pair<std::uint64_t, std::string>> first_unconvertible;
    };
    void hold(const RowValues& values);
    void decide();
    // Writes one row of values (RowValues, or a row held back).
    template <class Values>
    void write(const Values& values);
    // The cell of one value; a value that does not convert becomes its own text.
    void convert(std::size_t column, std::string_view raw, std::uint64_t row, Cell& cell);
    // Counts (and with strict, raises) a value that did not convert; its text as the cell.
    void unconvertible(std::size_t column, std::string_view text, std::uint64_t row, Cell& cell);
    // Points the cells of the row's lists at their items.
    void finish_lists();

    std::vector<Column> columns_;
    std::vector<ValueConverter> converters_;
    std::vector<Counts> counts_;
    std::vector<Cell> cells_;
    TableWriter& writer_;
    Settings settings_;
    std::uint64_t rows_ = 0;     // taken
    std::uint64_t written_ = 0;  // handed to the writer
    bool deciding_ = true;
    // The rows held back, packed: every value's text one after another, and per row and column the
    // number of values and their sizes (see HeldRow); a copy per value would cost an allocation each.
    std::string held_text_;
    std::vector<std::uint32_t> held_sizes_;
    static constexpr std::size_t kLargestSingle = (std::size_t{1} << 31) - 1;
    static constexpr std::size_t kMostReservedWords = std::size_t{4} << 20;
    std::size_t held_rows_ = 0;
    std::size_t unsettled_ = 0;  // converters before this one are settled
    // The values of a row's repeated columns, converted: their texts, where each lies in them, the
    // columns with their first piece, and the items pointing into the texts.
    struct Piece {
        Cell::Kind kind;
        std::size_t offset, size;
    };
    std::string list_text_;
    std::vector<Piece> pieces_;
    std::vector<std::pair<std::size_t, std::size_t>> lists_;
    std::vector<Cell> list_items_;
};

}  // namespace tolven::import
