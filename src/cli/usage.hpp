#pragma once
// Checks of the parsed command line that CLI11 does not make, and how usage errors are shown.
// Each check raises CLI::ParseError, which the command line turns into exit code 2.

#include <CLI/CLI.hpp>

#include <string>

namespace tolven::cli {

// "tolven-xml: error: <what>" and where to find the options, for every usage error.
std::string usage_failure(const CLI::App* app, const CLI::Error& error);

// Arguments CLI11 left over (every command allows extras so that they get here): an unknown
// command or option, with the nearest known one suggested, or a second FILE.
void reject_unexpected_arguments(CLI::App& app);
// A command must be given.
void require_command(const CLI::App& app);
// A command that reads a document and got no FILE reads standard input; when that is a terminal
// nobody is typing a document into, this fails at once instead of waiting in silence.
void require_document(CLI::App& app);

}  // namespace tolven::cli
