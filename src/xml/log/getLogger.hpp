#pragma once
// The process-wide diagnostic log (Boost.Log underneath; only log/getLogger.cpp includes it).

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace tolven::io::xml::common::log {

enum class Severity : unsigned { error = 0, warning = 1, debug = 2, info = 3, progress = 4, trace = 5 };

constexpr unsigned mask_of(Severity s) noexcept { return 1u << static_cast<unsigned>(s); }
constexpr unsigned kDebugMask = mask_of(Severity::debug);        // 0x04
constexpr unsigned kProgressMask = mask_of(Severity::progress);  // 0x10
constexpr unsigned kTraceMask = mask_of(Severity::trace);        // 0x20

class Logger {
public:
    // One mask test: callers check this before building any record text.
    bool enabled(Severity s) const noexcept { return (mask_.load(std::memory_order_relaxed) & mask_of(s)) != 0; }
    unsigned mask() const noexcept { return mask_.load(std::memory_order_relaxed); }
    void set_mask(unsigned mask) noexcept { mask_.store(mask, std::memory_order_relaxed); }

    // Writes one record when its severity is enabled. source is a path without extension
    // ("strategy/DetectionStrategy"); line 0 means none.
    void write(Severity severity, std::string_view message, std::string_view source = {}, unsigned line = 0) const;

private:
    std::atomic<unsigned> mask_{0};
};

// The one logger of the process.
Logger& getLogger();

// Sends records to stream as "[severity] message" lines (null: nowhere). Replaces the previous stream.
void set_stream_sink(std::ostream* stream);

struct CapturedRecord {
    Severity severity;
    std::string message;
};

// Collects the records written while it lives, with the given mask enabled; restores the previous
// mask afterwards. For tests.
class LogCapture {
public:
    explicit LogCapture(unsigned mask);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<CapturedRecord> records() const;
    // Only the messages, in order.
    std::vector<std::string> messages() const;

private:
    unsigned previous_mask_;
    struct Impl;
    Impl* impl_;
};

}  // namespace tolven::io::xml::common::log
