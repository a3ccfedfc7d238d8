#pragma once
// The manual page and the bash completion script, made from the command line's own CLI11
// definitions at build time, so that they always list the options --help lists.

#include <CLI/CLI.hpp>

#include <iosfwd>

namespace tolven::cli {

// A man(7) page of section 1: every command and option, the hints file and the exit codes.
void write_man_page(std::ostream& out, const CLI::App& app);
// A bash completion script: commands, each command's options, and the values of options that take
// one of a fixed set; everything else completes as file names.
void write_bash_completion(std::ostream& out, const CLI::App& app);

}  // namespace tolven::cli
