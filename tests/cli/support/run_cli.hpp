#pragma once
// Runs the built tolven-xml binary and captures what it writes.

#include <string>

#include "support/files.hpp"

namespace tolven::testing {

struct CliRun {
    int exit_code = -1;
    std::string out;
    std::string err;
};

// Runs `tolven-xml <arguments>` through the shell from the source folder (arguments are shell
// words: quote them), with standard input from stdin_file when it is not empty, and standard output
// to stdout_file (such as /dev/full) instead of out when that is not empty.
CliRun run_cli(const std::string& arguments, const std::string& stdin_file = "", const std::string& stdout_file = "");

}  // namespace tolven::testing
