#pragma once
#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/ExitCode.hpp"
#include "cli/HintOptions.hpp"
#include "cli/SampleOptions.hpp"

namespace tolven::cli {

// tolven-xml read [FILE|-] [hint options] [--format csv|tsv|jsonl|json|sqlite] [--crlf] [--output FILE]
//                 [--table-name NAME] [--replace] [--head N] [--stream|--no-stream] [--sample-bytes N]
//                 [--progress|--no-progress] [--quiet] [--summary text|json|none]
//                 [--type COL=TYPE]... [--date-format COL=FMT]... [--raw] [--strict] [--repeated first|all]
class ReadCommand {
public:
    explicit ReadCommand(CLI::App& app);
    bool selected() const { return command_->parsed(); }
    // Detects the table as detect does, then imports it to standard output or --output; notes,
    // warnings and the summary go to standard error.
    ExitCode run() const;

private:
    CLI::App* command_;
    std::string input_ = "-";
    std::string format_ = "csv";
    bool crlf_ = false;
    std::string output_;
    std::string table_name_;
    bool replace_ = false;
    std::optional<std::uint64_t> head_;
    bool huge_ = false;
    int threads_ = 2;
    SampleOptions sample_;
    bool progress_ = false;
    bool no_progress_ = false;
    std::vector<std::string> types_;         // COL=TYPE
    std::vector<std::string> date_formats_;  // COL=FMT
    bool raw_ = false;
    bool strict_ = false;
    std::string repeated_ = "first";
    bool quiet_ = false;
    std::string summary_ = "text";
    CLI::Option* summary_option_ = nullptr;
    HintOptions hints_;
};

}  // namespace tolven::cli
