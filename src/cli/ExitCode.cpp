#include "cli/ExitCode.hpp"

namespace tolven::cli {

ExitCode exit_code_for(const foundation::core::except::IUserException& error) {
    const std::string id = error.GetID();
    if (id == "TOLVEN:io:xml:common:FileNotReadable" || id == "TOLVEN:io:xml:common:MalformedDocument" ||
        id == "TOLVEN:io:xml:common:OutOfMemory")
        return ExitCode::BadInput;
    if (id == "TOLVEN:cli:InvalidHintsFile") return ExitCode::Usage;
    return ExitCode::Identified;
}

}  // namespace tolven::cli
