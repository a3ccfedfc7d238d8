#include "cli/Version.hpp"

#include <libxml/parser.h>
#include <nlohmann/json.hpp>
#include <unicode/uversion.h>

#include <cstdlib>
#include <iostream>

namespace tolven::cli {

namespace {

// The libraries as loaded at run time, which may be newer than the headers built against.
std::string libxml2_version() {
    const int v = std::atoi(xmlParserVersion);
    return std::to_string(v / 10000) + "." + std::to_string(v / 100 % 100) + "." + std::to_string(v % 100);
}

std::string icu_version() {
    UVersionInfo info;
    u_getVersion(info);
    char text[U_MAX_VERSION_STRING_LENGTH];
    u_versionToString(info, text);
    return text;
}

}  // namespace

std::string version_line() { return std::string("tolven-xml ") + TOLVEN_VERSION; }

VersionCommand::VersionCommand(CLI::App& app)
    : command_(app.add_subcommand("version", "Print the version of tolven-xml and of the libraries it uses")) {
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
}

void VersionCommand::run() const { write_version(std::cout, format_); }

void write_version(std::ostream& out, const std::string& format) {
    if (format == "json") {
        nlohmann::ordered_json j;
        j["Name"] = "tolven-xml";
        j["Version"] = TOLVEN_VERSION;
        j["Libraries"] = {{"libxml2", libxml2_version()}, {"ICU", icu_version()}};
        out << j.dump(2) << '\n';
    } else {
        out << version_line() << "\nlibxml2 " << libxml2_version() << ", ICU " << icu_version() << '\n';
    }
}

}  // namespace tolven::cli
