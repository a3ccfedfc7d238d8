#pragma once
#include <CLI/CLI.hpp>

#include <string>

#include "cli/ExitCode.hpp"
#include "cli/HintOptions.hpp"
#include "cli/SampleOptions.hpp"

namespace tolven::cli {

// tolven-xml detect [FILE|-] [hint options] [--stream|--no-stream] [--sample-bytes SIZE] [--format text|json]
//                   [-v|-vv|-vvv]
class DetectCommand {
public:
    explicit DetectCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    // Detects the table as read does (the builtin on the whole tree, or on a sample of a large input
    // followed by a survey of the whole) and writes the result to standard output.
    ExitCode run() const;

private:
    CLI::App* command_;
    std::string input_ = "-";
    std::string format_ = "text";
    bool huge_ = false;
    SampleOptions sample_;
    int verbosity_ = 0;
    HintOptions hints_;
};

}  // namespace tolven::cli
