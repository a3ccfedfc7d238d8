// tolven-xml: finds the table inside an XML document and says how to import it.
#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <iostream>

#include "cli/CleanupSignals.hpp"
#include "cli/DetectCommand.hpp"
#include "cli/ExitCode.hpp"
#include "cli/ReadCommand.hpp"
#include "cli/output.hpp"
#include "import/errors.hpp"
#include "cli/Version.hpp"
#include "cli/generate.hpp"
#include "cli/usage.hpp"
#include "cli/TablesCommand.hpp"

namespace {
constexpr const char* kExitCodes =
    "Exit codes: 0 done (table found or not), 1 an identified error (see the message identifier),\n"
    "2 usage error, 3 unreadable or malformed input.";

// Whatever went to std::cout (help, a command's text) must have been written: an exit status of 0
// after rows or a result were lost to a full disk would lie.
int checked_standard_output(int code) {
    std::cout.flush();
    if (!std::cout.fail() && std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
    const int error = errno;
    try {
        vxErrMsgId(TOLVEN::import::OutputNotWritable("<stdout>", std::string(std::strerror(error))));
    } catch (const foundation::core::except::IMsgIDException& unwritable) {
        tolven::cli::write_text_error(std::cerr, unwritable);
    }
    return code == 0 ? static_cast<int>(tolven::cli::ExitCode::Identified) : code;
}

int run(int argc, char** argv) {
    using tolven::cli::ExitCode;
    CLI::App app{"tolven-xml: find the table inside an XML document and say how to import it"};
    app.footer(kExitCodes);
    bool show_version = false;
    std::string version_format = "text";
    app.add_flag("--version", show_version, "Print the version and exit");
    auto* format = app.add_option("--format", version_format, "With --version: print it as text or as JSON")
                       ->check(CLI::IsMember({"text", "json"}));
    // Inherited by the commands: leftovers are reported by reject_unexpected_arguments, with a
    // suggestion, and every usage error in the same words.
    app.allow_extras();
    app.failure_message(tolven::cli::usage_failure);
    std::string generate;
    app.add_option("--generate", generate, "Write the man page or the bash completion script (used by the build)")
        ->check(CLI::IsMember({"man", "bash-completion"}))
        ->group("");
    tolven::cli::DetectCommand detect(app);
    tolven::cli::ReadCommand read(app);
    tolven::cli::VersionCommand version(app);
    tolven::cli::TablesCommand tables(app);

    try {
        app.parse(argc, argv);
        tolven::cli::reject_unexpected_arguments(app);
        if (generate == "man") tolven::cli::write_man_page(std::cout, app);
        if (generate == "bash-completion") tolven::cli::write_bash_completion(std::cout, app);
        if (!generate.empty()) return std::cout.flush() ? 0 : static_cast<int>(ExitCode::Identified);
        if (show_version) {
            tolven::cli::write_version(std::cout, version_format);
            return 0;
        }
        if (format->count() > 0)
            throw CLI::ParseError("--format goes after the command (tolven-xml detect --format json), or with --version",
                                  CLI::ExitCodes::ExtrasError);
        tolven::cli::require_command(app);
        tolven::cli::require_document(app);
    } catch (const CLI::ParseError& e) {
        // CLI11's own codes are not ours: help and version are 0, every other parse failure is a usage error.
        const int code = app.exit(e);
        return code == 0 ? 0 : static_cast<int>(ExitCode::Usage);
    }

    try {
        if (detect.selected()) return static_cast<int>(detect.run());
        if (read.selected()) return static_cast<int>(read.run());
        if (tables.selected()) return static_cast<int>(tables.run());
        if (version.selected()) {
            version.run();
            return 0;
        }
    } catch (const std::bad_alloc&) {
        // Reading met its resource limit: a fault of the input's size, not of the program.
        std::cerr << "tolven-xml: out of memory: the input, or what is built of it, does not fit in the memory "
                     "available\n";
        return static_cast<int>(ExitCode::BadInput);
    } catch (const std::exception& e) {
        std::cerr << "tolven-xml: internal error: " << e.what() << '\n';
        return static_cast<int>(ExitCode::Identified);
    }
    return static_cast<int>(ExitCode::Usage);
}

}  // namespace

int main(int argc, char** argv) {
    tolven::cli::remove_pending_outputs_on_signals();
    return checked_standard_output(run(argc, argv));
}
