#include "cli/HintOptions.hpp"

#include "cli/HintsFile.hpp"
#include "host/String.hpp"
#include "host/utf.hpp"

namespace tolven::cli {

namespace {

namespace hs = Harnvale::String;
using fl::i18n::utf8_to_ustring;

vxArrayPtr text(const std::string& value) { return hs::make_String(hs::createStringArray(utf8_to_ustring(value))); }

vxArrayPtr list(const std::vector<std::string>& values) {
    std::vector<std::u16string> texts;
    texts.reserve(values.size());
    for (const auto& v : values) texts.push_back(utf8_to_ustring(v));
    return hs::make_String(hs::createStringArray(texts));
}

vxArrayPtr logical(bool value) {
    vxArrayPtr array = do_create_numeric(vxClassID::Logical, 1, 1);
    vxGetLogicals(array.get())[0] = value;
    return array;
}

vxArrayPtr namespaces(const std::vector<std::string>& pairs) {
    hs::StringPtr table = hs::createStringArray(pairs.size(), pairs.empty() ? 0 : 2);
    for (std::size_t r = 0; r < pairs.size(); ++r) {
        const auto eq = pairs[r].find('=');
        table->set(r, 0, utf8_to_ustring(pairs[r].substr(0, eq)));
        table->set(r, 1, utf8_to_ustring(pairs[r].substr(eq + 1)));
    }
    return hs::make_String(table);
}

vxArrayPtr field_value(const HintOptions& h, std::string_view name) {
    if (name == "TableNodeName") return text(h.table_node_name);
    if (name == "RowNodeName") return text(h.row_node_name);
    if (name == "VariableNodeNames") return list(h.variable_node_names);
    if (name == "TableSelector") return text(h.table_selector);
    if (name == "RowSelector") return text(h.row_selector);
    if (name == "VariableSelectors") return list(h.variable_selectors);
    if (name == "AttributeSuffix") return text(h.attribute_suffix);
    if (name == "DateLocale") return text(h.date_locale);
    if (name == "ImportAttributes") return logical(h.import_attributes);
    if (name == "DetectNamespaces") return logical(h.detect_namespaces);
    if (name == "RegisteredNamespaces") return namespaces(h.register_namespace);
    if (name == "DecimalSeparator") return text(h.decimal_separator);
    if (name == "ThousandsSeparator") return text(h.thousands_separator);
    if (name == "ExponentCharacter") return text(h.exponent_character);
    return logical(h.trim_nonnumeric);  // TrimNonnumeric
}

void set_field(vxArray* hints, const char* name, vxArrayPtr value) {
    vxAddField(hints, name);
    vxSetField(hints, 0, name, value.release());
}

}  // namespace

void add_hint_options(CLI::App& app, HintOptions& h) {
    auto given = [&h](const char* field, CLI::Option* option) {
        h.given.emplace_back(field, option);
        return option;
    };
    app.add_option("--hints", h.hints_file,
                   "JSON file holding the hint structure itself (all fifteen fields, no defaults); "
                   "options given beside it replace its fields")
        ->check(CLI::ExistingFile);
    auto* hint_group = "Detection hints (give at most one)";
    given("TableNodeName", app.add_option("--table-node-name", h.table_node_name, "Name of the element that holds the rows"))->group(hint_group);
    given("RowNodeName", app.add_option("--row-node-name", h.row_node_name, "Name of the row element"))->group(hint_group);
    given("VariableNodeNames", app.add_option("--variable-node-names", h.variable_node_names, "Names of the variables' elements or attributes (repeatable)"))->group(hint_group);
    given("TableSelector", app.add_option("--table-selector", h.table_selector, "XPath selecting the element that holds the rows"))->group(hint_group);
    given("RowSelector", app.add_option("--row-selector", h.row_selector, "XPath selecting the rows"))->group(hint_group);
    given("VariableSelectors", app.add_option("--variable-selectors", h.variable_selectors, "XPath selecting one variable's nodes (repeatable)"))->group(hint_group);
    auto* settings = "Import settings";
    given("AttributeSuffix", app.add_option("--attribute-suffix", h.attribute_suffix, "Suffix for attribute columns whose names collide")->capture_default_str())->group(settings);
    given("DateLocale", app.add_option("--date-locale", h.date_locale, "Locale of month and weekday names in dates")->capture_default_str())->group(settings);
    given("ImportAttributes", app.add_option("--import-attributes", h.import_attributes, "Whether attributes count as variables (true|false)")->capture_default_str())->group(settings);
    given("DetectNamespaces", app.add_option("--detect-namespaces", h.detect_namespaces, "Register the document's namespace prefixes (true|false)")->capture_default_str())->group(settings);
    given("RegisteredNamespaces", app.add_option("--register-namespace", h.register_namespace, "PREFIX=URI to register for selectors (repeatable)")
        ->check([](const std::string& v) {
            const auto eq = v.find('=');
            return eq == std::string::npos || eq == 0 || eq + 1 == v.size() ? std::string("expected PREFIX=URI") : std::string();
        }))->group(settings);
    given("DecimalSeparator", app.add_option("--decimal-separator", h.decimal_separator, "Decimal separator of numbers")->capture_default_str())->group(settings);
    given("ThousandsSeparator", app.add_option("--thousands-separator", h.thousands_separator, "Thousands separator of numbers (none by default)"))->group(settings);
    given("ExponentCharacter", app.add_option("--exponent-character", h.exponent_character, "Characters that start an exponent")->capture_default_str())->group(settings);
    given("TrimNonnumeric", app.add_option("--trim-nonnumeric", h.trim_nonnumeric, "Strip non-numeric text around numbers (true|false)")->capture_default_str())->group(settings);
}

vxArrayPtr build_hint_struct(const HintOptions& h) {
    if (!h.hints_file.empty()) {
        vxArrayPtr hints = read_hints_file(h.hints_file);
        for (const auto& [name, option] : h.given)
            if (option->count() > 0) set_field(hints.get(), name, field_value(h, name));
        return hints;
    }
    vxArrayPtr hints = do_create_struct();
    for (const auto& [name, option] : h.given) set_field(hints.get(), name, field_value(h, name));
    return hints;
}

}  // namespace tolven::cli
