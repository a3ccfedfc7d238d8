#include "xml/log/getLogger.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace tolven::io::xml::common::log;

TEST(Logger, CaptureTakesOnlyEnabledSeveritiesWritesThemToTheStreamAndRestoresTheMask) {
    Logger& logger = getLogger();
    logger.set_mask(kTraceMask);
    std::ostringstream out;
    set_stream_sink(&out);
    {
        LogCapture capture(kProgressMask | kDebugMask | mask_of(Severity::error));
        EXPECT_FALSE(logger.enabled(Severity::trace));
        logger.write(Severity::progress, "Starting detection...");
        logger.write(Severity::trace, "not enabled");
        logger.write(Severity::debug, "dump", "strategy/DetectionStrategy", 12);
        logger.write(Severity::info, "not enabled either");
        logger.write(Severity::error, "bad", "x/y");
        EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Starting detection...", "dump", "bad"}));
    }
    set_stream_sink(nullptr);
    EXPECT_EQ(logger.mask(), kTraceMask);
    logger.write(Severity::trace, "after");
    logger.set_mask(0);
    EXPECT_EQ(out.str(),
              "[progress] Starting detection...\n"
              "[debug] dump (strategy/DetectionStrategy:12)\n"
              "[error] bad (x/y)\n");
}

}  // namespace
