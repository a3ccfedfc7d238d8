#include "cli/ProgressBar.hpp"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iterator>
#include <string>

namespace tolven::cli {

namespace {

constexpr char kErase[] = "\r\033[K";
constexpr int kSignals[] = {SIGPIPE, SIGINT, SIGTERM, SIGHUP};

// Shared with the signal handler: whether a line is on the screen, and the handlers replaced.
volatile std::sig_atomic_t line_drawn = 0;
struct sigaction previous[std::size(kSignals)];
bool installed[std::size(kSignals)] = {};

void write_stderr(const char* text, std::size_t size) {
    // Best effort: a progress line that cannot be written is not worth an error.
    [[maybe_unused]] const auto n = ::write(STDERR_FILENO, text, size);
}

extern "C" void erase_and_pass_on(int signal_number) {
    if (line_drawn) {
        write_stderr(kErase, sizeof kErase - 1);
        line_drawn = 0;
    }
    for (std::size_t i = 0; i < std::size(kSignals); ++i)
        if (kSignals[i] == signal_number && installed[i]) {
            ::sigaction(signal_number, &previous[i], nullptr);
            installed[i] = false;
        }
    // Blocked while this handler runs; delivered to the previous handler as it returns.
    ::raise(signal_number);
}

// A signal the process ignores stays ignored (nohup, a parent that ignores SIGPIPE): then a closed
// pipe is a write error, and the line is erased as the error unwinds.
void install_handlers() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        struct sigaction current {};
        if (::sigaction(kSignals[i], nullptr, &current) != 0 || current.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = &erase_and_pass_on;
        sigemptyset(&action.sa_mask);
        if (::sigaction(kSignals[i], &action, &previous[i]) == 0) installed[i] = true;
    }
}

void restore_handlers() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i)
        if (installed[i]) {
            ::sigaction(kSignals[i], &previous[i], nullptr);
            installed[i] = false;
        }
}

}  // namespace

ProgressBar::ProgressBar(bool enabled, std::uint64_t total_bytes)
    : enabled_(enabled), total_(total_bytes), start_(std::chrono::steady_clock::now()), next_(start_ + kFirstDraw) {}

ProgressBar::~ProgressBar() { finish(); }

void ProgressBar::update(std::uint64_t bytes, std::uint64_t rows) {
    if (!enabled_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = seconds > 0 ? static_cast<double>(rows) / seconds : 0.0;
    constexpr int width = 30;
    char line[160];
    if (total_ > 0) {
        const double share = std::min(1.0, static_cast<double>(bytes) / static_cast<double>(total_));
        const int filled = static_cast<int>(share * width);
        const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                                std::string(static_cast<std::size_t>(width - filled), '.');
        std::snprintf(line, sizeof line, "\r%3.0f%% [%s] %.1f/%.1f MB  %.0f rows/s\033[K", share * 100, bar.c_str(),
                      static_cast<double>(bytes) / 1e6, static_cast<double>(total_) / 1e6, rate);
    } else {
        std::snprintf(line, sizeof line, "\r%.1f MB  %.0f rows/s\033[K", static_cast<double>(bytes) / 1e6, rate);
    }
    if (!drawn_) install_handlers();
    write_stderr(line, std::char_traits<char>::length(line));
    drawn_ = true;
    line_drawn = 1;
}

void ProgressBar::restart() {
    finish();
    start_ = std::chrono::steady_clock::now();
    next_ = start_ + kFirstDraw;
}

void ProgressBar::finish() {
    if (!drawn_) return;
    line_drawn = 0;
    write_stderr(kErase, sizeof kErase - 1);
    restore_handlers();
    drawn_ = false;
}

}  // namespace tolven::cli
