#pragma once
// The hint options shared by the commands: one option per field of the hint structure.

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
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

    // The CLI11 options, to tell which ones the user gave.
    std::vector<std::pair<const char*, CLI::Option*>> given;
};

// Adds --hints and the fifteen hint options to a (sub)command.
void add_hint_options(CLI::App& app, HintOptions& hints);

// The hint structure the host passes to detect. Without --hints every field is filled from the
// options and their defaults; with --hints the file's structure is used as it is and the options
// the user gave replace its fields. Raises "TOLVEN:cli:InvalidHintsFile" for an unusable file.
vxArrayPtr build_hint_struct(const HintOptions& hints);

}  // namespace tolven::cli
