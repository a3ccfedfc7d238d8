#pragma once
#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>

#include "cli/ExitCode.hpp"
#include "cli/HintOptions.hpp"

namespace tolven::cli {

// tolven-xml read [FILE|-] [hint options] [--format csv|tsv|jsonl|json] [--output FILE] [--head N]
//                 [--stream|--no-stream] [--sample-bytes N] [--progress|--no-progress]
class ReadCommand {
public:
    explicit ReadCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    // Detects the table as detect does, then imports it to standard output or --output; the summary
    // goes to standard error.
    ExitCode run() const;

private:
    CLI::App* command_;
    std::string input_ = "-";
    std::string format_ = "csv";
    std::string output_;
    std::optional<std::uint64_t> head_;
    bool stream_ = false;
    bool no_stream_ = false;
    std::uint64_t sample_bytes_;
    bool progress_ = false;
    bool no_progress_ = false;
    HintOptions hints_;
};

}  // namespace tolven::cli
