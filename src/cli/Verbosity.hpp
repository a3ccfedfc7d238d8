#pragma once
#include <CLI/CLI.hpp>

namespace tolven::cli {

// -v progress records, -vv adds the debug dumps, -vvv adds trace records; all on standard error.
void add_verbosity_option(CLI::App& app, int& verbosity);
// Enables the log severities for a verbosity and routes the records to standard error.
void apply_verbosity(int verbosity);

}  // namespace tolven::cli
