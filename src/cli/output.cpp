#include "cli/output.hpp"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <sstream>

#include "import/OutputStream.hpp"

#include "cli/text_width.hpp"

namespace tolven::cli {

std::string padding(const std::string& text, std::size_t width) {
    return std::string(width - display_width(text) + 2, ' ');
}

void write_text(std::ostream& out, const DetectionResult& r, const std::vector<std::string>& column_names) {
    out << "Table detected: " << (r.table_detected ? "yes" : "no") << '\n';
    out << "TableSelector:  " << r.table_selector << '\n';
    out << "RowSelector:    " << r.row_selector << '\n';
    out << "Variables:      " << r.variables.size() << '\n';
    if (!r.variables.empty()) {
        std::size_t name_width = 8, column_width = 6, type_width = 4;
        for (std::size_t i = 0; i < r.variables.size(); ++i) {
            name_width = std::max(name_width, display_width(r.variables[i].name));
            column_width = std::max(column_width, display_width(column_names[i]));
            type_width = std::max(type_width, display_width(r.variables[i].type));
        }
        auto line = [&](const std::string& name, const std::string& column, const std::string& type,
                        const std::string& selector) {
            out << "  " << name << padding(name, name_width) << column << padding(column, column_width) << type
                << padding(type, type_width) << selector << '\n';
        };
        line("variable", "column", "type", "selector");
        for (std::size_t i = 0; i < r.variables.size(); ++i)
            line(r.variables[i].name, column_names[i], r.variables[i].type, r.variables[i].selector);
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

void write_json_error(std::ostream& out, const foundation::core::except::IMsgIDException& error,
                      const std::string& message) {
    nlohmann::ordered_json j;
    j["Error"]["Identifier"] = error.GetID();
    j["Error"]["Arguments"] = error.GetBaseMsgIDObj().arguments_utf8();
    j["Error"]["Message"] = message.empty() ? error.message_utf8() : message;
    out << j.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void write_text_error(std::ostream& out, const foundation::core::except::IMsgIDException& error,
                      const std::string& message) {
    out << "tolven-xml: error: " << (message.empty() ? error.message_utf8() : message) << " (" << error.GetID()
        << ")\n";
}

void write_standard_output(const std::string& text) {
    std::cout.flush();
    import::OutputStream out(STDOUT_FILENO, "<stdout>");
    out.append(text);
    out.flush();
}

void report_error(const foundation::core::except::IMsgIDException& error, bool json, const std::string& message) {
    if (json) {
        std::ostringstream text;
        write_json_error(text, error, message);
        try {
            write_standard_output(text.str());
            return;
        } catch (const foundation::core::except::IMsgIDException&) {
            // The error itself is the better news; it goes to standard error below.
        }
    }
    write_text_error(std::cerr, error, message);
}

}  // namespace tolven::cli
