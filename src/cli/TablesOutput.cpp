#include "cli/TablesOutput.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "cli/output.hpp"
#include "cli/text_width.hpp"

namespace tolven::cli {

namespace {

constexpr std::size_t kNamesWidth = 48;

std::string joined_names(const tables::ListedTable& t) {
    std::string out;
    for (const auto& name : t.variable_names) {
        if (!out.empty()) out += ", ";
        out += name;
    }
    if (display_width(out) <= kNamesWidth) return out;
    // Cut on a character boundary and mark the cut.
    std::size_t cut = 0, width = 0;
    while (cut < out.size() && width < kNamesWidth - 3) {
        ++cut;
        while (cut < out.size() && (static_cast<unsigned char>(out[cut]) & 0xC0) == 0x80) ++cut;
        ++width;
    }
    return out.substr(0, cut) + "...";
}

std::string notes(const tables::ListedTable& t) {
    std::string out = t.builtin ? "builtin's pick" : "";
    if (t.weak) out += out.empty() ? "weak" : ", weak";
    return out;
}

}  // namespace

void write_tables_text(std::ostream& out, const tables::TableList& list, std::optional<std::size_t> only) {
    const auto& candidates = list.candidates();
    if (candidates.empty()) {
        out << "No table found.\n";
        return;
    }
    std::vector<std::vector<std::string>> lines{{"Rank", "Rows", "Columns", "Where", "Names", "Notes"}};
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (only && *only != i) continue;
        const tables::ListedTable t = tables::listed_table(list, i);
        lines.push_back({std::to_string(t.rank), std::to_string(t.rows), std::to_string(t.variable_names.size()),
                         t.row_selector.empty() ? t.table_selector : t.row_selector, joined_names(t), notes(t)});
    }
    std::vector<std::size_t> widths(lines.front().size(), 0);
    for (const auto& line : lines)
        for (std::size_t k = 0; k < line.size(); ++k) widths[k] = std::max(widths[k], display_width(line[k]));
    for (const auto& line : lines) {
        std::string text;
        for (std::size_t k = 0; k < line.size(); ++k)
            text += line[k] + (k + 1 < line.size() ? padding(line[k], widths[k]) : "");
        while (!text.empty() && text.back() == ' ') text.pop_back();
        out << text << '\n';
    }
    out << "Use one with --table N on detect or read; --format json lists the options that select each.\n";
}

void write_tables_json(std::ostream& out, const tables::TableList& list, std::optional<std::size_t> only) {
    auto tables = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < list.candidates().size(); ++i) {
        if (only && *only != i) continue;
        const tables::ListedTable l = tables::listed_table(list, i);
        nlohmann::ordered_json t;
        t["Rank"] = l.rank;
        t["TableSelector"] = l.table_selector;
        t["RowSelector"] = l.row_selector;
        t["Rows"] = l.rows;
        t["Columns"] = l.variable_names.size();
        t["VariableNames"] = l.variable_names;
        t["Hint"] = l.hint;
        t["Builtin"] = l.builtin;
        t["Weak"] = l.weak;
        auto namespaces = nlohmann::json::array();
        for (const auto& [prefix, uri] : l.namespaces) namespaces.push_back({prefix, uri});
        t["RegisteredNamespaces"] = namespaces;
        tables.push_back(std::move(t));
    }
    nlohmann::ordered_json j;
    j["Tables"] = std::move(tables);
    out << j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

}  // namespace tolven::cli
