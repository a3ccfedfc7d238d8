#pragma once
// Importing the table of a document: into a row sink of the caller's, or into a file.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tolven/detect.hpp"
#include "tolven/options.hpp"

namespace tolven::xml {

// One column of the imported table.
struct Column {
    std::string name;  // the header: the variable's name without the "@" of attributes, made unique
    std::string type;  // the type imported as: the detected one (Variable::type), but "string" for a
                       // number column whose values carry leading zeros ("02110")
};

// How a column's values are represented, by its type name: Double for "double", "single" and the
// signed integer types; UInt64 for the unsigned ones; Datetime; Duration; Text for the others.
enum class ValueType : std::uint8_t { Double, UInt64, Datetime, Duration, Text };
// The representation of a column of type_name (as in Column::type). Never throws.
ValueType value_type(std::string_view type_name) noexcept;

// One value of a row, converted by its column's type; the text is borrowed for one RowSink::row call.
struct Cell {
    enum class Kind : std::uint8_t {
        Missing,  // no node, nothing to convert, or a value that does not convert
        Number,   // decimal text that is a valid JSON number ("44.95", "1e+300", "18446744073709551615")
        Text,     // anything else: strings, ISO 8601 dates ("2024-01-05T10:20:30Z"), durations
                  // ("hh:mm:ss[.fff]"), and "NaN", "Inf", "-Inf" in Double columns; also a value that
                  // does not convert to its column's type, as it stands in the document
        List,     // the several values a row holds for the column (ReadSettings::all_repeated), in items
    };
    Kind kind = Kind::Missing;
    std::string_view text;
    std::span<const Cell> items;  // the values of a List, none of them a List

    // True for a Missing cell. Never throws.
    bool missing() const noexcept { return kind == Kind::Missing; }
};

// Receives the rows of an import. Exceptions it throws leave read() unchanged.
class RowSink {
public:
    virtual ~RowSink() = default;
    // Called once, before the first row, with the table's columns.
    virtual void begin(const std::vector<Column>& columns) = 0;
    // One row: cells[i] is the value of column i. The cells and their text live during the call only.
    virtual void row(std::span<const Cell> cells) = 0;
    // Called once after the last row; not called when the import fails.
    virtual void end() {}
};

// What an import did.
struct ReadSummary {
    Detection detection;          // the table as detected
    std::vector<Column> columns;  // the columns as imported
    struct Counts {
        std::uint64_t missing = 0;        // values with no node or nothing to convert
        std::uint64_t unconvertible = 0;  // values that did not convert to the column's type
    };
    std::vector<Counts> counts;  // one per column
    std::uint64_t rows = 0;
    bool streamed = false;  // whether the input was streamed rather than loaded as a tree
};

// Detects the table as detect() does (on a sample when the input is streamed) and imports its rows
// into sink, in document order. notes, when given, is told of choices a user should know about (a
// fallback from streaming to a tree, with the reason). Throws Error: what detect() throws,
// "TOLVEN:import:NoTableDetected" (source) when there is no table, "MalformedDocument" when the
// document breaks off mid-way; and whatever sink throws. Safe on several threads at once, each
// with its own sink.
ReadSummary read(const Source& source, RowSink& sink, const Hints& hints = {}, const ReadSettings& settings = {},
                 const std::function<void(std::string_view)>& notes = {});

// Where read() writes a table of its own.
struct Output {
    enum class Format { Csv, Tsv, JsonLines, Json, Sqlite };
    Format format = Format::Csv;
    // The file; "-" or "" is standard output (not for Sqlite). Text formats are written to a
    // temporary file beside it and renamed when complete, so a failure leaves nothing behind.
    std::string path;
    // Sqlite: the table to write; "" names it after the input file ("catalog" for catalog.xml),
    // "data" for standard input and memory.
    std::string table_name;
    // Sqlite: replace a table of that name instead of failing with "TOLVEN:import:TableExists".
    bool replace = false;
};

// Imports the table into output, as `tolven-xml read` does. Sqlite writes typed columns (INTEGER,
// REAL, TEXT; dates and durations as ISO TEXT) in one transaction into a new or existing database;
// on any error the database is left as it was. Throws what read() into a sink throws, and
// "TOLVEN:import:OutputNotWritable" (path, reason), "TOLVEN:import:TableExists" (table, path).
ReadSummary read(const Source& source, const Output& output, const Hints& hints = {},
                 const ReadSettings& settings = {}, const std::function<void(std::string_view)>& notes = {});

}  // namespace tolven::xml
