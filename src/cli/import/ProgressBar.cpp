#include "cli/import/ProgressBar.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace tolven::cli::import {

namespace {

void write_stderr(const std::string& text) {
    // Best effort: a progress line that cannot be written is not worth an error.
    [[maybe_unused]] const auto n = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

ProgressBar::ProgressBar(bool enabled, std::uint64_t total_bytes)
    : enabled_(enabled), total_(total_bytes), start_(std::chrono::steady_clock::now()), next_(start_) {}

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
    write_stderr(line);
    drawn_ = true;
}

void ProgressBar::finish() {
    if (!drawn_) return;
    write_stderr("\r\033[K");
    drawn_ = false;
}

}  // namespace tolven::cli::import
