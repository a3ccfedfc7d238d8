#include "cli/output.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

namespace tolven::cli {

namespace {

// Columns a UTF-8 text takes on a terminal, counted as code points (continuation bytes skipped).
std::size_t display_width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Spaces that pad text to width, plus the two that separate columns.
std::string padding(const std::string& text, std::size_t width) {
    return std::string(width - display_width(text) + 2, ' ');
}

}  // namespace

void write_text(std::ostream& out, const DetectionResult& r) {
    out << "Table detected: " << (r.table_detected ? "yes" : "no") << '\n';
    out << "TableSelector:  " << r.table_selector << '\n';
    out << "RowSelector:    " << r.row_selector << '\n';
    out << "Variables:      " << r.variables.size() << '\n';
    std::size_t name_width = 4, type_width = 4;
    for (const auto& v : r.variables) {
        name_width = std::max(name_width, display_width(v.name));
        type_width = std::max(type_width, v.type.size());
    }
    for (const auto& v : r.variables) {
        out << "  " << v.name << padding(v.name, name_width) << v.type << padding(v.type, type_width) << v.selector
            << '\n';
    }
    out << "Namespaces:     " << r.namespaces.size() << '\n';
    std::size_t prefix_width = 0;
    for (const auto& entry : r.namespaces) prefix_width = std::max(prefix_width, display_width(entry.first));
    for (const auto& [prefix, uri] : r.namespaces) out << "  " << prefix << padding(prefix, prefix_width) << uri << '\n';
}

void write_json(std::ostream& out, const DetectionResult& r) {
    nlohmann::ordered_json j;
    j["TableDetected"] = r.table_detected;
    j["TableSelector"] = r.table_selector;
    j["RowSelector"] = r.row_selector;
    auto names = nlohmann::json::array(), types = nlohmann::json::array(), selectors = nlohmann::json::array();
    for (const auto& v : r.variables) {
        names.push_back(v.name);
        types.push_back(v.type);
        selectors.push_back(v.selector);
    }
    j["VariableNames"] = names;
    j["VariableTypes"] = types;
    j["VariableSelectors"] = selectors;
    auto namespaces = nlohmann::json::array();
    for (const auto& [prefix, uri] : r.namespaces) namespaces.push_back({prefix, uri});
    j["RegisteredNamespaces"] = namespaces;
    out << j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void write_json_error(std::ostream& out, const foundation::core::except::IMsgIDException& error) {
    nlohmann::ordered_json j;
    j["Error"]["Identifier"] = error.GetID();
    j["Error"]["Arguments"] = error.GetBaseMsgIDObj().arguments_utf8();
    j["Error"]["Message"] = error.message_utf8();
    out << j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void write_text_error(std::ostream& out, const foundation::core::except::IMsgIDException& error) {
    out << "tolven-xml: error: " << error.message_utf8() << " (" << error.GetID() << ")\n";
}

}  // namespace tolven::cli
