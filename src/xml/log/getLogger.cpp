#include "xml/log/getLogger.hpp"

#include <boost/log/attributes/constant.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record.hpp>
#include <boost/log/keywords/severity.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_logger.hpp>

#include <mutex>
#include <ostream>
#include <string>
#include <utility>

namespace tolven::io::xml::common::log {

namespace {

// The records of one LogCapture; captures stack, the innermost one receives.
struct CaptureBuffer {
    std::vector<CapturedRecord> records;
    CaptureBuffer* previous = nullptr;
};

namespace logging = boost::log;

// Marks the records of this logger, so the sink leaves other Boost.Log users' records alone.
constexpr const char* kMarker = "TolvenLog";
constexpr const char* kSource = "TolvenSource";
constexpr const char* kLine = "TolvenLine";

const char* severity_name(Severity severity) {
    switch (severity) {
        case Severity::error: return "error";
        case Severity::warning: return "warning";
        case Severity::debug: return "debug";
        case Severity::info: return "info";
        case Severity::progress: return "progress";
        case Severity::trace: return "trace";
    }
    return "unknown";
}

// Where records go: the stream of set_stream_sink and the innermost live LogCapture.
struct Destinations {
    std::mutex mutex;
    std::ostream* stream = nullptr;
    CaptureBuffer* capture = nullptr;
};

Destinations& destinations() {
    static Destinations instance;
    return instance;
}

// Hands each record to the destinations; the synchronous frontend feeds it one record at a time,
// on the writing thread, so records arrive in order.
class DispatchBackend : public logging::sinks::basic_sink_backend<logging::sinks::synchronized_feeding> {
public:
    void consume(const logging::record_view& record) {
        const auto severity = logging::extract<Severity>(logging::aux::default_attribute_names::severity(), record);
        const auto message = logging::extract<std::string>(logging::aux::default_attribute_names::message(), record);
        if (!severity || !message) return;

        Destinations& to = destinations();
        std::lock_guard lock(to.mutex);
        if (to.capture != nullptr) to.capture->records.push_back({*severity, *message});
        if (to.stream != nullptr) {
            std::string line = "[";
            line += severity_name(*severity);
            line += "] ";
            line += *message;
            if (const auto source = logging::extract<std::string>(kSource, record)) {
                line += " (";
                line += *source;
                if (const auto number = logging::extract<unsigned>(kLine, record); number && *number != 0) {
                    line += ':';
                    line += std::to_string(*number);
                }
                line += ')';
            }
            line += '\n';
            *to.stream << line << std::flush;
        }
    }
};

struct BoostLogger {
    BoostLogger() : core(logging::core::get()) {
        logger.add_attribute(kMarker, logging::attributes::constant<bool>(true));
        auto sink = boost::make_shared<logging::sinks::synchronous_sink<DispatchBackend>>();
        sink->set_filter([](const logging::attribute_value_set& values) { return values.find(kMarker) != values.end(); });
        core->add_sink(sink);
    }

    logging::core_ptr core;  // keeps the core alive as long as this logger
    logging::sources::severity_logger_mt<Severity> logger;
};

BoostLogger& boost_logger() {
    static BoostLogger instance;
    return instance;
}

}  // namespace

struct LogCapture::Impl : CaptureBuffer {};

void Logger::write(Severity severity, std::string_view message, std::string_view source, unsigned line) const {
    if (!enabled(severity)) return;
    auto& backend = boost_logger().logger;
    logging::record record = backend.open_record(logging::keywords::severity = severity);
    if (!record) return;
    if (!source.empty()) {
        record.attribute_values().insert(kSource, logging::attributes::make_attribute_value(std::string(source)));
        record.attribute_values().insert(kLine, logging::attributes::make_attribute_value(line));
    }
    {
        logging::record_ostream stream(record);
        stream.write(message.data(), static_cast<std::streamsize>(message.size()));
    }
    backend.push_record(std::move(record));
}

Logger& getLogger() {
    static Logger instance;
    boost_logger();  // the sink is in place before the first record
    return instance;
}

void set_stream_sink(std::ostream* stream) {
    Destinations& to = destinations();
    std::lock_guard lock(to.mutex);
    to.stream = stream;
}

LogCapture::LogCapture(unsigned mask) : previous_mask_(getLogger().mask()), impl_(new Impl) {
    {
        Destinations& to = destinations();
        std::lock_guard lock(to.mutex);
        impl_->previous = std::exchange(to.capture, impl_);
    }
    getLogger().set_mask(mask);
}

LogCapture::~LogCapture() {
    getLogger().set_mask(previous_mask_);
    {
        Destinations& to = destinations();
        std::lock_guard lock(to.mutex);
        // Captures end in reverse order of creation; one ended early is simply unlinked.
        if (to.capture == impl_) {
            to.capture = impl_->previous;
        } else {
            for (CaptureBuffer* c = to.capture; c != nullptr; c = c->previous)
                if (c->previous == impl_) c->previous = impl_->previous;
        }
    }
    delete impl_;
}

std::vector<CapturedRecord> LogCapture::records() const {
    std::lock_guard lock(destinations().mutex);
    return impl_->records;
}

std::vector<std::string> LogCapture::messages() const {
    std::lock_guard lock(destinations().mutex);
    std::vector<std::string> messages;
    messages.reserve(impl_->records.size());
    for (const auto& record : impl_->records) messages.push_back(record.message);
    return messages;
}

}  // namespace tolven::io::xml::common::log
