#pragma once
#include <chrono>
#include <cstdint>

#include "import/Progress.hpp"

namespace tolven::cli {

// One line on standard error: the share of the input read, bytes read of total and rows per second,
// redrawn at most ten times a second. Disabled, it does nothing.
//
// The line is first drawn after a second: a short run (above all `read | head`, which ends as soon
// as head has its lines) never shows it, so the rows a consumer prints to the same terminal never
// land on it. Once drawn, it is erased however the run ends: normally, on an error (the destructor),
// and on a signal that ends the process (a closed pipe, an interrupt), whose handler erases the
// line and then hands the signal on to the handler that was there before.
class ProgressBar final : public import::Progress {
public:
    static constexpr std::chrono::milliseconds kFirstDraw{1000};

    // total 0: the size is unknown, so no share is shown.
    ProgressBar(bool enabled, std::uint64_t total_bytes);
    ~ProgressBar() override;
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    bool enabled() const noexcept { return enabled_; }
    void update(std::uint64_t bytes, std::uint64_t rows) override;
    // Erases the line, and waits as long again before drawing: rows written to a pipe may reach the
    // terminal the bar is on, and a consumer that stops at once must not find the bar beside them.
    void restart() override;
    // Clears the line and puts the signal handlers back.
    void finish();

private:
    bool enabled_;
    bool drawn_ = false;
    std::uint64_t total_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point next_;
};

}  // namespace tolven::cli
