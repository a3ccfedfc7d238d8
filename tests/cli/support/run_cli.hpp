#pragma once
// Runs the built tolven-xml binary and captures what it writes.

#include <string>

namespace tolven::testing {

struct CliRun {
    int exit_code = -1;
    std::string out;
    std::string err;
};

// Runs `tolven-xml <arguments>` through the shell from the source folder (arguments are shell
// words: quote them), with standard input from stdin_file when it is not empty.
CliRun run_cli(const std::string& arguments, const std::string& stdin_file = "");

// A file of the given content in a fresh temporary folder; returns its path.
std::string write_temp_file(const std::string& name, const std::string& content);

// The path of a bundled example, e.g. example("catalog.xml").
std::string example(const std::string& name);

}  // namespace tolven::testing
