#include "xml/log/getLogger.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace tolven::io::xml::common::log;

TEST(Logger, CaptureTakesOnlyEnabledSeveritiesInOrderAndRestoresTheMask) {
    Logger& logger = getLogger();
    logger.set_mask(kTraceMask);
    {
        LogCapture capture(kProgressMask | kDebugMask);
        EXPECT_TRUE(logger.enabled(Severity::progress));
        EXPECT_FALSE(logger.enabled(Severity::trace));
        logger.write(Severity::progress, "Starting detection...");
        logger.write(Severity::trace, "not enabled");
        logger.write(Severity::debug, "dump", "strategy/DetectionStrategy", 12);
        logger.write(Severity::info, "not enabled either");
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 2u);
        EXPECT_EQ(records[0].severity, Severity::progress);
        EXPECT_EQ(records[1].severity, Severity::debug);
        EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Starting detection...", "dump"}));
    }
    EXPECT_EQ(logger.mask(), kTraceMask);
    logger.set_mask(0);
}

TEST(Logger, NestedCaptureReceivesWhileItLives) {
    LogCapture outer(kProgressMask);
    getLogger().write(Severity::progress, "one");
    {
        LogCapture inner(kProgressMask);
        getLogger().write(Severity::progress, "two");
        EXPECT_EQ(inner.messages(), std::vector<std::string>{"two"});
    }
    getLogger().write(Severity::progress, "three");
    EXPECT_EQ(outer.messages(), (std::vector<std::string>{"one", "three"}));
}

TEST(Logger, StreamSinkWritesOneLinePerRecord) {
    std::ostringstream out;
    set_stream_sink(&out);
    {
        LogCapture capture(kProgressMask | kTraceMask | mask_of(Severity::error));
        getLogger().write(Severity::progress, "Parsing builtin input arguments (detection hints)...");
        getLogger().write(Severity::trace, "void f()", "arguments/parse", 42);
        getLogger().write(Severity::error, "bad", "x/y");
        getLogger().write(Severity::debug, "disabled");
    }
    set_stream_sink(nullptr);
    getLogger().write(Severity::error, "after");
    EXPECT_EQ(out.str(),
              "[progress] Parsing builtin input arguments (detection hints)...\n"
              "[trace] void f() (arguments/parse:42)\n"
              "[error] bad (x/y)\n");
}

TEST(Logger, RecordsFromSeveralThreadsAllArrive) {
    LogCapture capture(kProgressMask);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 250; ++i) getLogger().write(Severity::progress, "tick");
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(capture.records().size(), 1000u);
}

}  // namespace
