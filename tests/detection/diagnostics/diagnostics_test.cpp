#include <gtest/gtest.h>

#include <stdexcept>

#include "detection/diagnostics/TraceScope.hpp"
#include "detection/diagnostics/printers.hpp"
#include "detection/variables/VariableStatistics.hpp"
#include "xml/log/getLogger.hpp"

namespace {

namespace log = tolven::io::xml::common::log;
namespace diagnostics = tolven::io::xml::detection::diagnostics;
using tolven::io::xml::detection::VariableStatistics;

void traced(bool fail) {
    TOLVEN_TRACE_SCOPE("void traced(bool)", "diagnostics/test");
    if (fail) throw std::runtime_error("boom");
}

void catches_inside() {
    TOLVEN_TRACE_SCOPE("void catches_inside()", "diagnostics/test");
    try {
        traced(true);
    } catch (const std::runtime_error&) {
    }
}

TEST(TraceScope, WritesEntryAndExitAndMarksExceptionalExits) {
    log::LogCapture capture(log::kTraceMask);
    traced(false);
    EXPECT_THROW(traced(true), std::runtime_error);
    catches_inside();
    EXPECT_EQ(capture.messages(),
              (std::vector<std::string>{"void traced(bool)", "void traced(bool)", "void traced(bool)",
                                        "void traced(bool) [throw]", "void catches_inside()", "void traced(bool)",
                                        "void traced(bool) [throw]", "void catches_inside()"}));
}

TEST(TraceScope, WritesNothingWhenTraceIsOff) {
    log::LogCapture capture(log::kProgressMask | log::kDebugMask);
    traced(false);
    EXPECT_TRUE(capture.messages().empty());
}

TEST(printers, OptionsDumpListsTenFieldsInFixedOrder) {
    tolven::io::xml::detection::options::DetectionOptions o;
    o.RowNodeName = u"book";
    o.VariableSelectors = {u"//a", u"//b"};
    o.AttributeSuffix = u"Attribute";
    o.ImportAttributes = true;
    o.DetectNamespaces = false;
    EXPECT_EQ(diagnostics::print_options(o),
              "\nDetectionOptions = \n{\n"
              "    TableNodeName: \"\",\n"
              "    RowNodeName: \"book\",\n"
              "    VariableNodeNames: [],\n"
              "    TableSelector: \"\",\n"
              "    RowSelector: \"\",\n"
              "    VariableSelectors: [\"//a\", \"//b\"],\n"
              "    AttributeSuffix: \"Attribute\",\n"
              "    DateLocale: \"\",\n"
              "    ImportAttributes: true,\n"
              "    DetectNamespaces: false,\n"
              "}");
}

TEST(printers, StatisticsDumpPrintsTheDerivedVariableFlag) {
    EXPECT_EQ(tolven::io::xml::detection::print_statistics({}), "{\n}");
    VariableStatistics s;
    s.num_row_appearances = 2;
    s.total_appearences = 3;
    s.is_leaf = false;
    EXPECT_EQ(tolven::io::xml::detection::print_statistics({s}),
              "{\n    {\n"
              "        total_appearences = 3,\n"
              "        num_row_appearances = 2,\n"
              "        num_non_empty_samples = 0,\n"
              "        is_variable = false,\n"
              "        is_attribute = false,\n"
              "        is_leaf = false,\n"
              "    },\n}");
}

}  // namespace
