#pragma once
// Trace records on entry to and exit from the detection's main operations, and progress messages.

#include <cstdint>
#include <string_view>

#include "xml/log/getLogger.hpp"

namespace tolven::io::xml::detection::diagnostics {

// Writes the signature when trace is enabled at entry, and again on exit, followed by " [throw]"
// when the function is being left by an exception. Tests the trace bit once.
class TraceScope {
public:
    TraceScope(std::string_view signature, std::string_view source, std::uint32_t line) noexcept;
    ~TraceScope();
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    common::log::Logger& logger_;
    bool enabled_;
    std::string_view signature_;
    std::string_view source_;
    std::uint32_t line_;
    int uncaught_;
};

inline bool progress_enabled() noexcept {
    return common::log::getLogger().enabled(common::log::Severity::progress);
}
inline bool debug_enabled() noexcept { return common::log::getLogger().enabled(common::log::Severity::debug); }

// One progress record (the text is only written when progress is enabled).
void progress(std::string_view message);
// One debug record: dumps. Callers build the text only after testing debug_enabled().
void debug(std::string_view message);

}  // namespace tolven::io::xml::detection::diagnostics

#define TOLVEN_TRACE_SCOPE(signature, source) \
    ::tolven::io::xml::detection::diagnostics::TraceScope tolven_trace_scope_((signature), (source), __LINE__)
