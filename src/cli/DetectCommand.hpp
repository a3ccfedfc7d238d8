#pragma once
#include <CLI/CLI.hpp>

#include <string>

#include "cli/ExitCode.hpp"
#include "cli/HintOptions.hpp"

namespace tolven::cli {

// tolven-xml detect [FILE|-] [hint options] [--format text|json] [-v|-vv|-vvv]
class DetectCommand {
public:
    explicit DetectCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    // Loads the document, calls detect as the host does and writes the result to standard output.
    ExitCode run() const;

private:
    CLI::App* command_;
    std::string input_ = "-";
    std::string format_ = "text";
    int verbosity_ = 0;
    HintOptions hints_;
};

}  // namespace tolven::cli
