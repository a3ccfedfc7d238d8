#pragma once
#include <CLI/CLI.hpp>

#include <iosfwd>
#include <string>

namespace tolven::cli {

// "tolven-xml 0.1.0": the program and the project version it was built as.
std::string version_line();
// The version and the libxml2 and ICU in use: format "text" (the version line first) or "json"
// ({"Name", "Version", "Libraries": {"libxml2", "ICU"}}).
void write_version(std::ostream& out, const std::string& format);

// tolven-xml version [--format text|json], the same as tolven-xml --version [--format text|json].
class VersionCommand {
public:
    explicit VersionCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    void run() const;

private:
    CLI::App* command_;
    std::string format_ = "text";
};

}  // namespace tolven::cli
