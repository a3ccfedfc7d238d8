#include "cli/support/run_cli.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

namespace tolven::testing {

CliRun run_cli(const std::string& arguments, const std::string& stdin_file, const std::string& stdout_file) {
    const auto dir = fresh_folder();
    const auto out = dir / "stdout";
    const auto err = dir / "stderr";
    std::string command = std::string("cd '") + TOLVEN_SOURCE_DIR + "' && '" + TOLVEN_CLI_PATH + "' " + arguments +
                          " >'" + (stdout_file.empty() ? out.string() : stdout_file) + "' 2>'" + err.string() + "'";
    command += stdin_file.empty() ? " </dev/null" : " <'" + stdin_file + "'";
    const int status = std::system(command.c_str());
    CliRun run;
    run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = slurp(out.string());
    run.err = slurp(err.string());
    std::filesystem::remove_all(dir);
    return run;
}

}  // namespace tolven::testing
