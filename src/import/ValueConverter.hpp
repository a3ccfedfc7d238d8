#pragma once
// Converts a column's text values by the column's type, after deciding from the first values how
// the whole column reads (the order of day and month, numbers with leading zeros as text).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "detection/options/DetectionOptions.hpp"
#include "import/Cell.hpp"
#include "import/Column.hpp"
#include "text/TypeAnalyzerOptions.hpp"
#include "text/textio/MutableField.hpp"
#include "text/typeconversion/DateFormat.hpp"
#include "text/typeconversion/DateOrder.hpp"

namespace tolven::import {

// The settings values are read with: the same that detection derives from the hint structure.
io::text::typedetection::TypeAnalyzerOptions make_analyzer_options(
    const io::xml::detection::options::DetectionOptions& options);

// The type names a column can be written as: "string", "char", "categorical" (text), "double",
// "single", "int8" ... "int64", "uint8" ... "uint64", "datetime", "duration".
bool is_known_type(std::string_view type_name) noexcept;
inline constexpr const char* kKnownTypes =
    "string, double, single, int8, int16, int32, int64, uint8, uint16, uint32, uint64, datetime, duration";

class ValueConverter {
public:
    // The options must outlive the converter. Throws std::invalid_argument for a type that is not
    // known or a date format that does not compile.
    ValueConverter(const Column& column, const io::text::typedetection::TypeAnalyzerOptions& options);

    // Before the first value is written: looks at a value (trimmed, non-empty) of row (from 1) for
    // what decides how the column reads.
    void observe(std::string_view text, std::uint64_t row);
    // True when no further value can change the decisions.
    bool settled() const noexcept;
    // Fixes the decisions, once: the date order is the one the values showed, else day first for
    // dates written with dots ("04.03.2024"), else the locale's;
    // a number column (its type not given by hand) one of whose values has leading zeros is text.
    void decide();

    // After decide(): the cell for a trimmed, non-empty value; false, with cell untouched, when the
    // value does not convert. Integers are written from their digits; other numbers as the shortest
    // text that reads back to the same double, whole ones without exponent; NaN and infinities as the
    // text "NaN", "Inf", "-Inf"; unsigned integers ("0x1F", "0b101") in decimal; "datetime" in ISO
    // 8601 (values so written already pass as they are); "duration" as hh:mm:ss[.fff]; text as it is.
    // The cell borrows from the converter until the next call.
    bool convert(std::string_view text, Cell& cell) {
        // Text, the most common, without a call.
        if (target_ == Target::Text) {
            cell = {Cell::Kind::Text, text, {}};
            return true;
        }
        return convert_other(text, cell);
    }

    // The type the column is written as.
    const std::string& type() const noexcept { return type_; }
    // A sentence for people on a decision they may want to change; "" when there is none.
    const std::string& note() const noexcept { return note_; }

private:
    enum class Target : std::uint8_t { Text, Double, Single, Signed, Unsigned, Datetime, Duration };
    bool convert_other(std::string_view text, Cell& cell);
    bool convert_number(std::string_view text, Cell& cell);
    bool convert_integer(std::string_view text, Cell& cell);
    bool convert_datetime(std::string_view text, Cell& cell);
    bool convert_duration(std::string_view text, Cell& cell);

    std::string name_;
    std::string type_;
    Target target_ = Target::Text;
    bool type_given_ = false;
    std::int64_t min_ = 0;   // Signed
    std::uint64_t max_ = 0;  // Signed and Unsigned
    const io::text::typedetection::TypeAnalyzerOptions* options_;
    bool plain_numbers_;  // plain decimals may skip write_number under these options
    const io::text::typeconversion::LocaleDateData* locale_ = nullptr;  // Datetime
    std::optional<io::text::typeconversion::DateFormat> format_;
    std::optional<io::text::typeconversion::DateOrder> order_;  // from the values, then decided
    std::string ambiguous_date_;                                // a value either order reads, differently
    bool dotted_ = false;                                       // a numeric date with "." after its first field
    std::optional<std::pair<std::uint64_t, std::string>> leading_zeros_;  // row and value
    std::string note_;
    io::text::textio::MutableField wide_;
    std::string number_;
    std::string converted_;
};

}  // namespace tolven::import
