#include "cli/support/run_cli.hpp"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tolven::testing {

namespace {

std::string slurp(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::filesystem::path fresh_folder() {
    static int counter = 0;
    auto dir = std::filesystem::temp_directory_path() /
               ("tolven-cli-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(dir);
    return dir;
}

}  // namespace

CliRun run_cli(const std::string& arguments, const std::string& stdin_file) {
    const auto dir = fresh_folder();
    const auto out = dir / "stdout";
    const auto err = dir / "stderr";
    std::string command = std::string("cd '") + TOLVEN_SOURCE_DIR + "' && '" + TOLVEN_CLI_PATH + "' " + arguments +
                          " >'" + out.string() + "' 2>'" + err.string() + "'";
    command += stdin_file.empty() ? " </dev/null" : " <'" + stdin_file + "'";
    const int status = std::system(command.c_str());
    CliRun run;
    run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = slurp(out);
    run.err = slurp(err);
    std::filesystem::remove_all(dir);
    return run;
}

std::string write_temp_file(const std::string& name, const std::string& content) {
    const auto path = fresh_folder() / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string example(const std::string& name) { return std::string(TOLVEN_SOURCE_DIR) + "/examples/" + name; }

}  // namespace tolven::testing
