#pragma once
// Runs a shell command on a pseudo-terminal, as a user at a terminal would, and shows what the
// terminal would show.

#include <string>

namespace tolven::testing {

struct PtyRun {
    int exit_code = -1;  // of the shell; -1 when it was killed at the time limit
    std::string output;  // every byte written to the terminal
};

// Runs `sh -c command` from the source folder with standard input, output and error on a new
// pseudo-terminal; $TOLVEN names the built tolven-xml. Killed after time_limit seconds.
PtyRun run_in_pty(const std::string& command, int time_limit = 30);

// The lines a terminal shows after output: "\r" returns to the start of the line, "ESC[K" erases
// to its end, other escape sequences are dropped.
std::string screen(const std::string& output);

}  // namespace tolven::testing
