#pragma once
// The rows of an import gathered into one typed buffer per column, without the GIL: numbers,
// nanoseconds and UTF-8 text in C++ memory, turned into Python objects once the import is done.

#include <tolven/read.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tolven::python {

struct ColumnData {
    std::string name;
    std::string type;  // the detected type name
    xml::ValueType value_type = xml::ValueType::Text;
    std::vector<double> doubles;         // Double: NaN where missing
    std::vector<std::uint64_t> uints;    // UInt64, with missing
    std::vector<std::int64_t> nanos;     // Datetime (since 1970, UTC) and Duration: nanoseconds
    std::vector<std::uint8_t> missing;   // UInt64, Datetime, Duration, Text: 1 where missing
    std::string text;                    // Text, and Datetime or Duration kept as text: values end to end
    std::vector<std::size_t> ends;       // where each value of text ends
    // Datetime and Duration values that do not fit 64-bit nanoseconds turn the column into Text
    // (their ISO text), so no value is lost.
    bool as_text = false;
};

class ColumnBuilder : public xml::RowSink {
public:
    void begin(const std::vector<xml::Column>& columns) override;
    void row(std::span<const xml::Cell> cells) override;

    std::vector<ColumnData>& columns() noexcept { return columns_; }
    std::size_t rows() const noexcept { return rows_; }

private:
    void append_text(ColumnData& column, const xml::Cell& cell);
    std::vector<ColumnData> columns_;
    std::size_t rows_ = 0;
};

// Nanoseconds since 1970-01-01T00:00:00Z of an ISO 8601 date ("2024-01-05") or date-time
// ("2024-01-05T10:20:30.125", then "Z" or "+hh:mm"; a time without a zone is taken as UTC).
// None when the text is not of that form or the instant does not fit 64 bits.
std::optional<std::int64_t> iso_datetime_nanos(std::string_view text) noexcept;
// Nanoseconds of a duration "[-]hh:mm:ss[.fff]" (hours of any width); None likewise.
std::optional<std::int64_t> duration_nanos(std::string_view text) noexcept;

}  // namespace tolven::python
