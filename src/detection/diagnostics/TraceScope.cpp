#include "detection/diagnostics/TraceScope.hpp"

#include <exception>
#include <string>

namespace tolven::io::xml::detection::diagnostics {

using common::log::Severity;

TraceScope::TraceScope(std::string_view signature, std::string_view source, std::uint32_t line) noexcept
    : logger_(common::log::getLogger()),
      enabled_(logger_.enabled(Severity::trace)),
      signature_(signature),
      source_(source),
      line_(line),
      uncaught_(std::uncaught_exceptions()) {
    if (!enabled_) return;
    try {
        logger_.write(Severity::trace, signature_, source_, line_);
    } catch (...) {
        // Tracing must never change the outcome of the traced call.
    }
}

TraceScope::~TraceScope() {
    if (!enabled_) return;
    try {
        if (std::uncaught_exceptions() > uncaught_) {
            logger_.write(Severity::trace, std::string(signature_) + " [throw]", source_, line_);
        } else {
            logger_.write(Severity::trace, signature_, source_, line_);
        }
    } catch (...) {
        // An exception already in flight must never be replaced.
    }
}

void progress(std::string_view message) { common::log::getLogger().write(Severity::progress, message); }

void debug(std::string_view message) { common::log::getLogger().write(Severity::debug, message); }

}  // namespace tolven::io::xml::detection::diagnostics
