#include "cli/summary.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

#include "cli/text_width.hpp"

namespace tolven::cli {

namespace {

// The counts per column, in the order shown; a new count of RowSink needs one line here.
struct Count {
    const char* header;  // the text summary's column header
    const char* field;   // the JSON summary's field
    std::uint64_t (import::RowSink::*of)(std::size_t) const;
};
constexpr Count kCounts[] = {
    {"missing", "Missing", &import::RowSink::missing},
    {"unconvertible", "Unconvertible", &import::RowSink::unconvertible},
    {"repeated", "Repeated", &import::RowSink::repeated},
};

}  // namespace

void write_text_summary(std::ostream& out, const ReadReport& r) {
    const std::size_t n = r.columns.size();
    out << "tolven-xml: " << r.sink.rows() << (r.sink.rows() == 1 ? " row, " : " rows, ") << n
        << (n == 1 ? " column\n" : " columns\n");
    // Text columns are padded on the right, counts aligned on the right under their header.
    std::vector<std::vector<std::string>> table{{"column", "variable", "type"}};
    for (const Count& c : kCounts) table[0].push_back(c.header);
    for (std::size_t i = 0; i < n; ++i) {
        table.push_back({r.columns[i].name, r.variables[i].name, r.sink.type(i)});
        for (const Count& c : kCounts) table.back().push_back(std::to_string((r.sink.*c.of)(i)));
    }
    std::vector<std::size_t> width(table[0].size(), 0);
    for (const auto& row : table)
        for (std::size_t k = 0; k < row.size(); ++k) width[k] = std::max(width[k], display_width(row[k]));
    constexpr std::size_t kTextCells = 3;
    for (const auto& row : table) {
        for (std::size_t k = 0; k < row.size(); ++k) {
            const std::string pad(width[k] - display_width(row[k]), ' ');
            out << "  " << (k < kTextCells ? row[k] + pad : pad + row[k]);
        }
        out << '\n';
    }
}

void write_json_summary(std::ostream& out, const ReadReport& r) {
    nlohmann::ordered_json j;
    j["Rows"] = r.sink.rows();
    j["Columns"] = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < r.columns.size(); ++i) {
        nlohmann::ordered_json column;
        column["Name"] = r.columns[i].name;
        column["Variable"] = r.variables[i].name;
        column["Type"] = r.sink.type(i);
        column["Selector"] = r.variables[i].selector;
        for (const Count& c : kCounts) column[c.field] = (r.sink.*c.of)(i);
        j["Columns"].push_back(std::move(column));
    }
    j["Notes"] = r.notes;
    j["Warnings"] = r.warnings;
    out << j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

}  // namespace tolven::cli
