#include "cli/HintsFile.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cli/OptionChecks.hpp"
#include "cli/errors.hpp"
#include "cli/suggest.hpp"

namespace tolven::cli {

namespace {

using nlohmann::json;

// The fields of detect's result that say where the table is; the other result fields are read
// only to check them.
constexpr const char* kResultOnly[] = {"TableDetected", "VariableNames", "VariableTypes"};
constexpr const char* kLocatingHints[] = {"TableNodeName", "RowNodeName", "VariableNodeNames"};

class Reader {
public:
    explicit Reader(HintOptions& hints) : hints_(hints), path_(hints.hints_file) {}

    void run() {
        const json document = load();
        if (!document.is_object()) fail("it must hold one JSON object whose fields are the hints");
        if (document.contains("TableDetected")) read_result(document);
        else read_hints(document);
    }

private:
    [[noreturn]] void fail(const std::string& reason) const {
        vxErrMsgId(TOLVEN::cli::InvalidHintsFile(path_, reason));
    }
    // "field \"X\" must be ..., not <the value>", or "entry N of field ...".
    [[noreturn]] void wrong_type(const std::string& field, const std::string& expected, const json& value,
                                 const std::string& entry = "") const {
        std::string shown = value.dump(-1, ' ', false, json::error_handler_t::replace);
        if (shown.size() > 40) shown = shown.substr(0, 37) + "...";
        fail(entry + "field \"" + field + "\" must be " + expected + ", not " + shown);
    }

    json load() const {
        if (std::filesystem::is_directory(path_)) fail("it is a folder");
        std::ifstream in(path_);
        if (!in) fail(std::strerror(errno));
        try {
            return json::parse(in);
        } catch (const json::exception& e) {
            // A syntax error or a number out of range; the library's own "[json.exception...] " prefix
            // means nothing to users.
            std::string what = e.what();
            const auto end = what.find("] ");
            fail("it is not valid JSON: " + (end == std::string::npos ? what : what.substr(end + 2)));
        }
    }

    // A hints file: any of the fifteen fields.
    void read_hints(const json& document) {
        for (const auto& [name, value] : document.items()) {
            const HintField* field = find(name);
            if (field == nullptr) {
                std::vector<std::string> names;
                for (const HintField& f : hint_fields()) names.emplace_back(f.name);
                fail("unknown field \"" + name + "\"" + did_you_mean(name, names));
            }
            apply(*field, value);
        }
    }

    // The output of detect --format json: the selectors it found become one hint (the one that
    // finds the same rows), the settings beside them are read as in a hints file.
    void read_result(const json& document) {
        const json& detected = document["TableDetected"];
        if (!detected.is_boolean()) wrong_type("TableDetected", "true or false", detected);
        if (!detected.get<bool>()) fail("it is a detect result that found no table, so it says nowhere to look");
        for (const char* name : {"TableSelector", "RowSelector"})
            if (document.contains(name) && !document[name].is_string()) wrong_type(name, "a string", document[name]);
        for (const char* name : {"VariableNames", "VariableTypes", "VariableSelectors"})
            if (document.contains(name)) check_strings(name, document[name]);

        const auto text = [&](const char* name) { return document.value(name, std::string()); };
        for (const auto& item : document.items()) {
            const std::string& name = item.key();
            const json& value = item.value();
            if (std::find_if(std::begin(kLocatingHints), std::end(kLocatingHints),
                             [&](const char* h) { return name == h; }) != std::end(kLocatingHints))
                fail("field \"" + name + "\" cannot be combined with a detect result, which already says where "
                     "the table is");
            const bool result_field = std::find_if(std::begin(kResultOnly), std::end(kResultOnly),
                                                   [&](const char* r) { return name == r; }) != std::end(kResultOnly);
            const bool selector = name == "TableSelector" || name == "RowSelector" || name == "VariableSelectors";
            if (result_field || selector) continue;
            const HintField* field = find(name);
            if (field == nullptr) fail("unknown field \"" + name + "\" beside a detect result");
            apply(*field, value);
        }
        if (!text("RowSelector").empty()) set("RowSelector", &HintOptions::row_selector, text("RowSelector"));
        else if (!text("TableSelector").empty()) set("TableSelector", &HintOptions::table_selector, text("TableSelector"));
        else if (document.contains("VariableSelectors"))
            set("VariableSelectors", &HintOptions::variable_selectors,
                document["VariableSelectors"].get<std::vector<std::string>>());
    }

    static const HintField* find(const std::string& name) {
        for (const HintField& f : hint_fields())
            if (name == f.name) return &f;
        return nullptr;
    }

    template <typename T>
    void set(const char* field, T HintOptions::*member, T value) {
        if (!hints_.given_on_command_line(field)) hints_.*member = std::move(value);
    }

    void check_strings(const std::string& field, const json& value) const {
        if (!value.is_array()) wrong_type(field, "a list of strings", value);
        for (std::size_t i = 0; i < value.size(); ++i)
            if (!value[i].is_string())
                wrong_type(field, "a string", value[i], "entry " + std::to_string(i + 1) + " of ");
    }

    // One field, its type checked; null leaves the default.
    void apply(const HintField& field, const json& value) {
        if (value.is_null()) return;
        const std::string name = field.name;
        if (const auto* text = std::get_if<std::string HintOptions::*>(&field.member)) {
            if (!value.is_string()) wrong_type(name, "a string", value);
            if (name == "DateLocale")
                if (const std::string reason = check_date_locale(value.get<std::string>()); !reason.empty())
                    fail("field \"DateLocale\": " + reason);
            set(field.name, *text, value.get<std::string>());
        } else if (const auto* flag = std::get_if<bool HintOptions::*>(&field.member)) {
            if (!value.is_boolean()) wrong_type(name, "true or false", value);
            set(field.name, *flag, value.get<bool>());
        } else if (const auto* list = std::get_if<std::vector<std::string> HintOptions::*>(&field.member);
                   *list == &HintOptions::register_namespace) {
            set(field.name, *list, namespaces(value));
        } else {
            check_strings(name, value);
            set(field.name, *list, value.get<std::vector<std::string>>());
        }
    }

    // [[prefix, uri], ...] as the PREFIX=URI texts of --register-namespace.
    std::vector<std::string> namespaces(const json& value) const {
        const char* expected = "a list of [prefix, uri] pairs";
        if (!value.is_array()) wrong_type("RegisteredNamespaces", expected, value);
        std::vector<std::string> pairs;
        for (const json& pair : value) {
            if (!pair.is_array() || pair.size() != 2 || !pair[0].is_string() || !pair[1].is_string() ||
                pair[0].get<std::string>().empty() || pair[0].get<std::string>().find('=') != std::string::npos)
                wrong_type("RegisteredNamespaces", expected, pair);
            pairs.push_back(pair[0].get<std::string>() + "=" + pair[1].get<std::string>());
        }
        return pairs;
    }

    HintOptions& hints_;
    std::string path_;
};

}  // namespace

void apply_hints_file(HintOptions& hints) { Reader(hints).run(); }

}  // namespace tolven::cli
