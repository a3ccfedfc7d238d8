#include "cli/HintOptions.hpp"

#include <algorithm>

#include "cli/HintsFile.hpp"
#include "cli/OptionChecks.hpp"
#include "host/values.hpp"

namespace tolven::cli {

namespace {

constexpr HintField kFields[] = {
    {"VariableSelectors", &HintOptions::variable_selectors},
    {"VariableNodeNames", &HintOptions::variable_node_names},
    {"TableSelector", &HintOptions::table_selector},
    {"TableNodeName", &HintOptions::table_node_name},
    {"RowSelector", &HintOptions::row_selector},
    {"RowNodeName", &HintOptions::row_node_name},
    {"AttributeSuffix", &HintOptions::attribute_suffix},
    {"DateLocale", &HintOptions::date_locale},
    {"ImportAttributes", &HintOptions::import_attributes},
    {"DetectNamespaces", &HintOptions::detect_namespaces},
    {"RegisteredNamespaces", &HintOptions::register_namespace},
    {"DecimalSeparator", &HintOptions::decimal_separator},
    {"ThousandsSeparator", &HintOptions::thousands_separator},
    {"ExponentCharacter", &HintOptions::exponent_character},
    {"TrimNonnumeric", &HintOptions::trim_nonnumeric},
};

// "PREFIX=URI" options as (prefix, URI) rows.
vxArrayPtr namespaces(const std::vector<std::string>& options) {
    std::vector<std::pair<std::string, std::string>> pairs;
    pairs.reserve(options.size());
    for (const auto& option : options) {
        const auto eq = option.find('=');
        pairs.emplace_back(option.substr(0, eq), option.substr(eq + 1));
    }
    return host::make_text_pairs(pairs);
}

vxArrayPtr field_value(const HintOptions& h, const HintField& field) {
    struct Visitor {
        const HintOptions& h;
        vxArrayPtr operator()(std::string HintOptions::*m) const { return host::make_text(h.*m); }
        vxArrayPtr operator()(std::vector<std::string> HintOptions::*m) const {
            return m == &HintOptions::register_namespace ? namespaces(h.*m) : host::make_text_list(h.*m);
        }
        vxArrayPtr operator()(bool HintOptions::*m) const { return host::make_logical(h.*m); }
    };
    return std::visit(Visitor{h}, field.member);
}

std::string check_namespace(const std::string& v) {
    const auto eq = v.find('=');
    return eq == std::string::npos || eq == 0 || eq + 1 == v.size() ? "expected PREFIX=URI, not '" + v + "'" : "";
}

}  // namespace

std::span<const HintField> hint_fields() { return kFields; }

bool HintOptions::given_on_command_line(std::string_view field) const {
    return std::any_of(given.begin(), given.end(),
                       [&](const auto& entry) { return entry.first == field && entry.second->count() > 0; });
}

void add_hint_options(CLI::App& app, HintOptions& h) {
    auto given = [&h](const char* field, CLI::Option* option) {
        h.given.emplace_back(field, option);
        return option;
    };
    app.add_option("--hints", h.hints_file,
                   "JSON file of hint fields (any of the fifteen; the others keep their defaults), or the "
                   "output of detect --format json; options given beside it win")
        ->type_name("FILE");
    // Options of several values take one value per occurrence, so that a FILE after them is never
    // taken for one more value. Names hold no commas, so they may also be listed as NAME,NAME.
    auto* hint_group = "Detection hints (give at most one)";
    given("TableNodeName", app.add_option("--table-node-name", h.table_node_name, "Name of the element that holds the rows"))->group(hint_group);
    given("RowNodeName", app.add_option("--row-node-name", h.row_node_name, "Name of the row element"))->group(hint_group);
    given("VariableNodeNames", app.add_option("--variable-node-names", h.variable_node_names, "Names of the variables' elements or attributes: NAME,NAME or the option repeated")
        ->allow_extra_args(false)->delimiter(','))->group(hint_group);
    given("TableSelector", app.add_option("--table-selector", h.table_selector, "XPath selecting the element that holds the rows"))->group(hint_group);
    given("RowSelector", app.add_option("--row-selector", h.row_selector, "XPath selecting the rows"))->group(hint_group);
    given("VariableSelectors", app.add_option("--variable-selectors", h.variable_selectors, "XPath selecting one variable's nodes; repeat the option for each variable")
        ->allow_extra_args(false))->group(hint_group);
    auto* settings = "Import settings";
    given("AttributeSuffix", app.add_option("--attribute-suffix", h.attribute_suffix, "Suffix for attribute columns whose names collide")->capture_default_str())->group(settings);
    given("DateLocale", app.add_option("--date-locale", h.date_locale, "Locale of month and weekday names in dates (en_US, de_DE, fr-FR, ...)")
        ->check(DateLocale())->type_name("LOCALE")->capture_default_str())->group(settings);
    given("ImportAttributes", app.add_option("--import-attributes", h.import_attributes, "Whether attributes count as variables (true|false)")->default_str(h.import_attributes ? "true" : "false"))->group(settings);
    given("DetectNamespaces", app.add_option("--detect-namespaces", h.detect_namespaces, "Register the document's namespace prefixes (true|false)")->default_str(h.detect_namespaces ? "true" : "false"))->group(settings);
    given("RegisteredNamespaces", app.add_option("--register-namespace", h.register_namespace, "PREFIX=URI to register for selectors; repeat the option for each")
        ->allow_extra_args(false)->type_name("PREFIX=URI")->check(CLI::Validator(check_namespace, "")))->group(settings);
    given("DecimalSeparator", app.add_option("--decimal-separator", h.decimal_separator, "Decimal separator of numbers")->capture_default_str())->group(settings);
    given("ThousandsSeparator", app.add_option("--thousands-separator", h.thousands_separator, "Thousands separator of numbers (none by default)"))->group(settings);
    given("ExponentCharacter", app.add_option("--exponent-character", h.exponent_character, "Characters that start an exponent")->capture_default_str())->group(settings);
    given("TrimNonnumeric", app.add_option("--trim-nonnumeric", h.trim_nonnumeric, "Strip non-numeric text around numbers (true|false)")->default_str(h.trim_nonnumeric ? "true" : "false"))->group(settings);
    auto* table = app.add_option("--table", h.table, "Use table N as `tolven-xml tables` lists them (1 is the likeliest)")
                      ->check(CLI::PositiveNumber)
                      ->group(hint_group);
    for (std::size_t i = 0; i < 6; ++i) table->excludes(h.given[i].second);
}

HintOptions with_hints_file(const HintOptions& h) {
    HintOptions merged = h;
    if (!h.hints_file.empty()) apply_hints_file(merged);
    merged.hints_file.clear();
    return merged;
}

vxArrayPtr build_hint_struct(const HintOptions& h) {
    const HintOptions merged = with_hints_file(h);
    vxArrayPtr hints = do_create_struct();
    for (const HintField& field : kFields) {
        vxAddField(hints.get(), field.name);
        vxSetField(hints.get(), 0, field.name, field_value(merged, field).release());
    }
    return hints;
}

}  // namespace tolven::cli
