// tolven-xml: finds the table inside an XML document and says how to import it.
#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

#include "cli/DetectCommand.hpp"
#include "cli/ExitCode.hpp"
#include "cli/ReadCommand.hpp"

namespace {
constexpr const char* kExitCodes =
    "Exit codes: 0 done (table found or not), 1 an identified error (see the message identifier),\n"
    "2 usage error, 3 unreadable or malformed input.";
}

int main(int argc, char** argv) {
    using tolven::cli::ExitCode;
    CLI::App app{"tolven-xml: find the table inside an XML document and say how to import it"};
    app.footer(kExitCodes);
    app.require_subcommand(1);
    tolven::cli::DetectCommand detect(app);
    tolven::cli::ReadCommand read(app);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // CLI11's own codes are not ours: help is 0, every other parse failure is a usage error.
        const int code = app.exit(e);
        return code == 0 ? 0 : static_cast<int>(ExitCode::Usage);
    }

    try {
        if (detect.selected()) return static_cast<int>(detect.run());
        if (read.selected()) return static_cast<int>(read.run());
    } catch (const std::exception& e) {
        std::cerr << "tolven-xml: internal error: " << e.what() << '\n';
        return static_cast<int>(ExitCode::Identified);
    }
    return static_cast<int>(ExitCode::Usage);
}
