#include "cli/support/run_in_pty.hpp"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

namespace tolven::testing {

PtyRun run_in_pty(const std::string& command, int time_limit) {
    winsize size{};
    size.ws_row = 50;
    size.ws_col = 200;
    int terminal = -1;
    const pid_t pid = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (pid < 0) return {};
    if (pid == 0) {
        if (::chdir(TOLVEN_SOURCE_DIR) != 0) ::_exit(127);
        ::setenv("TOLVEN", TOLVEN_CLI_PATH, 1);
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    PtyRun run;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(time_limit);
    bool killed = false;
    for (;;) {
        pollfd p{terminal, POLLIN, 0};
        if (::poll(&p, 1, 100) > 0) {
            char buffer[4096];
            const ssize_t n = ::read(terminal, buffer, sizeof buffer);
            if (n > 0) run.output.append(buffer, static_cast<std::size_t>(n));
            else if (n == 0 || errno != EINTR) break;  // EIO: every writer has closed the terminal
        }
        if (!killed && std::chrono::steady_clock::now() > deadline) {
            ::kill(-pid, SIGKILL);  // the shell leads its own session and process group
            killed = true;
        }
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(terminal);
    run.exit_code = !killed && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string screen(const std::string& output) {
    std::string shown, line;
    std::size_t column = 0;
    for (std::size_t i = 0; i < output.size(); ++i) {
        const char c = output[i];
        if (c == '\r') {
            column = 0;
        } else if (c == '\n') {
            shown += line + '\n';
            line.clear();
            column = 0;
        } else if (c == '\033' && i + 1 < output.size() && output[i + 1] == '[') {
            std::size_t end = i + 2;
            while (end < output.size() && !(output[end] >= '@' && output[end] <= '~')) ++end;
            if (end < output.size() && output[end] == 'K' && column < line.size()) line.resize(column);
            i = end;
        } else {
            if (column >= line.size()) line.resize(column + 1, ' ');
            line[column++] = c;
        }
    }
    return shown + line;
}

}  // namespace tolven::testing
