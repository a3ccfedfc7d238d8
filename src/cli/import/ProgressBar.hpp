#pragma once
#include <chrono>
#include <cstdint>

namespace tolven::cli::import {

// One line on standard error: the share of the input read, bytes read of total and rows per second,
// redrawn at most ten times a second. Disabled, it does nothing.
class ProgressBar {
public:
    // total 0: the size is unknown, so no share is shown.
    ProgressBar(bool enabled, std::uint64_t total_bytes);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    bool enabled() const noexcept { return enabled_; }
    void update(std::uint64_t bytes, std::uint64_t rows);
    // Clears the line.
    void finish();

private:
    bool enabled_;
    bool drawn_ = false;
    std::uint64_t total_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point next_;
};

}  // namespace tolven::cli::import
