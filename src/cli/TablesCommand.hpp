#pragma once
#include <CLI/CLI.hpp>

#include <string>

#include "cli/ExitCode.hpp"
#include "cli/HintOptions.hpp"

namespace tolven::cli {

// tolven-xml tables [FILE|-] [import settings] [--table N] [--format text|json]
class TablesCommand {
public:
    explicit TablesCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    // Lists every candidate table of the document, best first, on standard output.
    ExitCode run() const;

private:
    CLI::App* command_;
    std::string input_ = "-";
    std::string format_ = "text";
    HintOptions hints_;
};

}  // namespace tolven::cli
