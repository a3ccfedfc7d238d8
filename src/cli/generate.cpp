#include "cli/generate.hpp"

#include <ostream>
#include <string>
#include <vector>

#include "cli/Version.hpp"

namespace tolven::cli {

namespace {

std::vector<const CLI::App*> commands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> visible_options(const CLI::App& app) {
    return app.get_options([](const CLI::Option* o) { return !o->get_group().empty(); });
}

bool takes_value(const CLI::Option& o) { return o.get_items_expected_max() > 0; }

// The fixed values an option takes, from its type name ("TEXT:{csv,tsv}", "BOOLEAN"); none if free.
std::vector<std::string> choices(const CLI::Option& o) {
    const std::string type = o.get_type_name();
    if (type == "BOOLEAN") return {"true", "false"};
    const auto open = type.find('{');
    const auto close = type.find('}', open);
    if (open == std::string::npos || close == std::string::npos) return {};
    std::vector<std::string> values;
    std::string list = type.substr(open + 1, close - open - 1);
    for (std::size_t start = 0, comma; start <= list.size(); start = comma + 1) {
        comma = list.find(',', start);
        if (comma == std::string::npos) comma = list.size();
        values.push_back(list.substr(start, comma - start));
    }
    return values;
}

std::string join(const std::vector<std::string>& words, const std::string& separator) {
    std::string text;
    for (const auto& w : words) text += (text.empty() ? "" : separator) + w;
    return text;
}

// The word that stands for an option's value: its choices, or its type name.
std::string value_word(const CLI::Option& o) {
    const auto values = choices(o);
    if (!values.empty()) return join(values, "|");
    const std::string type = o.get_type_name();
    return type.substr(0, type.find(':'));
}

std::vector<std::string> flags_of(const CLI::Option& o) {
    std::vector<std::string> names;
    for (const auto& n : o.get_snames()) names.push_back("-" + n);
    for (const auto& n : o.get_lnames()) names.push_back("--" + n);
    return names;
}

// Text for roff: backslashes escaped, hyphens kept as hyphen-minus.
std::string escape(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\') out += "\\e";
        else if (c == '-') out += "\\-";
        else out += c;
    }
    return out;
}

// Escaped lines of text, none of them read as a request.
std::string roff(const std::string& text) {
    std::string safe;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string line = escape(text.substr(start, end - start));
        safe += (!line.empty() && (line[0] == '.' || line[0] == '\'') ? "\\&" : "") + line + "\n";
        start = end + 1;
    }
    return safe;
}

void man_options(std::ostream& out, const CLI::App& command) {
    std::string group;
    for (const CLI::Option* o : visible_options(command)) {
        if (o->get_positional()) continue;
        if (o->get_group() != group) {
            group = o->get_group();
            out << ".PP\n.I " << roff(group);
        }
        out << ".TP\n\\fB" << escape(join(flags_of(*o), ", ")) << "\\fR";
        if (takes_value(*o)) out << " \\fI" << escape(value_word(*o)) << "\\fR";
        out << '\n';
        std::string text = o->get_description();
        if (!o->get_default_str().empty()) text += " (default: " + o->get_default_str() + ")";
        out << roff(text);
    }
}

constexpr const char* kHintsFile =
    "--hints FILE reads a JSON object holding any of the fifteen hint fields by name: TableNodeName, "
    "RowNodeName, TableSelector, RowSelector, AttributeSuffix, DateLocale, DecimalSeparator, "
    "ThousandsSeparator and ExponentCharacter are strings; VariableNodeNames and VariableSelectors lists of "
    "strings; ImportAttributes, DetectNamespaces and TrimNonnumeric true or false; RegisteredNamespaces a list "
    "of [prefix, uri] pairs. A field left out, or null, keeps the option's default; an option given on the "
    "command line wins over the file. The output of detect --format json is a hints file too: its "
    "RowSelector (or, for a table without row elements, its TableSelector) becomes the hint and its "
    "RegisteredNamespaces are registered, so the same table is found again. A file that cannot be read, is "
    "not such an object, names an unknown field or holds a value of the wrong type is a usage error.";

}  // namespace

void write_man_page(std::ostream& out, const CLI::App& app) {
    out << ".TH TOLVEN\\-XML 1 \"\" \"" << escape(version_line()) << "\" \"User Commands\"\n";
    out << ".SH NAME\ntolven\\-xml \\- find the table inside an XML document and import it\n";
    out << ".SH SYNOPSIS\n";
    for (const CLI::App* command : commands(app))
        out << ".B tolven\\-xml " << command->get_name() << "\n"
            << (command->get_option_no_throw("file") ? ".RI [ FILE | \\- ]\n" : "") << "[\\fIoptions\\fR]\n.br\n";
    out << ".B tolven\\-xml \\-\\-version\n[\\fB\\-\\-format\\fR \\fItext|json\\fR]\n";
    out << ".SH DESCRIPTION\n" << roff(app.get_description() + ".");
    out << ".PP\nWithout FILE, or with \\-, the document is read from standard input; without FILE, standard "
           "input must not be a terminal.\n";
    out << ".SH COMMANDS\n";
    for (const CLI::App* command : commands(app)) {
        out << ".SS " << command->get_name() << "\n" << roff(command->get_description() + ".");
        man_options(out, *command);
    }
    out << ".SH HINTS FILE\n" << roff(kHintsFile);
    out << ".SH EXIT STATUS\n" << roff(app.get_footer());
}

void write_bash_completion(std::ostream& out, const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : commands(app)) names.push_back(command->get_name());
    std::vector<std::string> top;
    for (const CLI::Option* o : visible_options(app))
        for (const auto& f : flags_of(*o)) top.push_back(f);
    out << "# bash completion for tolven-xml, generated from its option definitions.\n"
           "_tolven_xml() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} command= i\n"
           "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
           "        case ${COMP_WORDS[i]} in\n"
           "            " << join(names, "|") << ") command=${COMP_WORDS[i]}; break ;;\n"
           "        esac\n"
           "    done\n"
           "    local words=\n"
           "    case $command in\n"
           "        '') words='" << join(names, " ") << "'; [[ $cur == -* ]] && words='" << join(top, " ") << "' ;;\n";
    for (const CLI::App* command : commands(app)) {
        std::vector<std::string> flags;
        out << "        " << command->get_name() << ")\n            case $prev in\n";
        for (const CLI::Option* o : visible_options(*command)) {
            if (o->get_positional()) continue;
            const auto f = flags_of(*o);
            flags.insert(flags.end(), f.begin(), f.end());
            if (const auto values = choices(*o); takes_value(*o) && !values.empty())
                out << "                " << join(f, "|") << ") COMPREPLY=($(compgen -W '" << join(values, " ")
                    << "' -- \"$cur\")); return ;;\n";
        }
        out << "            esac\n            [[ $cur == -* ]] && words='" << join(flags, " ") << "' ;;\n";
    }
    out << "    esac\n"
           "    # Nothing to offer: bash completes file names (complete -o default).\n"
           "    [[ -n $words ]] && COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
           "}\n"
           "complete -o default -F _tolven_xml tolven-xml\n";
}

}  // namespace tolven::cli
