#pragma once
#include "host/except/Exception.hpp"

namespace tolven::cli {

// The command line's exit codes.
enum class ExitCode : int {
    Done = 0,        // finished, whether or not a table was found
    Identified = 1,  // an error with a message identifier (a bad hint, a selector that selects nothing, ...)
    Usage = 2,       // the command line itself is wrong
    BadInput = 3,    // the input cannot be read or is not well-formed XML
};

// The exit code for an identified error: unreadable or malformed input is BadInput, a bad hints
// file is Usage, everything else Identified.
ExitCode exit_code_for(const foundation::core::except::IUserException& error);

}  // namespace tolven::cli
