#pragma once
// The hint options shared by the commands: one option per field of the hint structure.

#include <CLI/CLI.hpp>

#include <span>
#include <string>
#include <variant>
#include <vector>

#include "host/vxArray.hpp"

namespace tolven::cli {

struct HintOptions {
    std::string hints_file;  // "" when --hints is not given
    std::string table_node_name, row_node_name, table_selector, row_selector;
    std::vector<std::string> variable_node_names, variable_selectors;
    std::string attribute_suffix = "Attribute";
    std::string date_locale = "en_US";
    bool import_attributes = true;
    bool detect_namespaces = true;
    std::vector<std::string> register_namespace;  // PREFIX=URI
    std::string decimal_separator = ".";
    std::string thousands_separator;
    std::string exponent_character = "eEdD";
    bool trim_nonnumeric = false;
    std::size_t table = 0;  // --table N: candidate N of `tolven-xml tables`; 0 when not given

    // The CLI11 option of each field, to tell which ones the user gave.
    std::vector<std::pair<const char*, CLI::Option*>> given;
    bool given_on_command_line(std::string_view field) const;
};

// One field of the hint structure and the member that holds it. "RegisteredNamespaces" is a list
// of "PREFIX=URI" texts.
struct HintField {
    const char* name;
    std::variant<std::string HintOptions::*, std::vector<std::string> HintOptions::*, bool HintOptions::*> member;
};
// The fifteen fields, in the order the builtin reads them.
std::span<const HintField> hint_fields();

// Adds --hints, the fifteen hint options and --table to a (sub)command.
void add_hint_options(CLI::App& app, HintOptions& hints);

// The hints with the --hints file read in: an option the user gave wins, then the file's field,
// then the option's default. Raises "TOLVEN:cli:InvalidHintsFile" for an unusable hints file.
HintOptions with_hints_file(const HintOptions& hints);

// The hint structure the host passes to detect, all fifteen fields filled (the hints file read in
// first, when one is given).
vxArrayPtr build_hint_struct(const HintOptions& hints);

}  // namespace tolven::cli
