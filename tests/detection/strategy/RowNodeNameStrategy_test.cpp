#include "detection/strategy/RowNodeNameStrategy.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"
#include "xml/log/getLogger.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;
namespace log = tolven::io::xml::common::log;

HintFields row_node_name(std::u16string name) {
    HintFields hints;
    hints.RowNodeName = std::move(name);
    return hints;
}

TEST(RowNodeNameStrategy, BuildsTheTableFromTheNamedRows) {
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, row_node_name(u"book"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/library/books");
    EXPECT_EQ(r.row_selector, "/library/books/book");
    EXPECT_EQ(r.names, (Args{"@id", "title", "price"}));
    EXPECT_EQ(r.types, (Args{"string", "string", "double"}));
    EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"Dune", "Emma", "Ulysses"}));
}

TEST(RowNodeNameStrategy, RowsAreEveryElementOnTheFoundPath) {
    // The items of both groups share the first item's path; the item under <other> does not.
    constexpr const char* kGroups = R"(<r>
      <g><item><v>1</v></item></g>
      <g><item><v>2</v></item><item><v>3</v></item></g>
      <other><item><v>9</v></item></other>
    </r>)";
    auto doc = parse_xml(kGroups);
    const DetectResult r = run_detect(doc, row_node_name(u"item"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/r/g");
    EXPECT_EQ(r.row_selector, "/r/g/item");
    EXPECT_EQ(r.selectors, (Args{"/r/g/item/v"}));
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"1", "2", "3"}));
}

TEST(RowNodeNameStrategy, TheRootAsRowIsItsOwnTable) {
    const DetectResult r = run_detect("<r><a>1</a><b>x</b></r>", row_node_name(u"r"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/r");
    EXPECT_EQ(r.row_selector, "/r");
    EXPECT_EQ(r.selectors, (Args{"/r/a", "/r/b"}));
}

TEST(RowNodeNameStrategy, ReportsBothSelectorsWhenTheRowsMakeNoTable) {
    // No name below the rows fills more than half of them.
    const DetectResult r = run_detect("<r><e><a>1</a></e><e><b>2</b></e><e><c>3</c></e></r>", row_node_name(u"e"));
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "/r");
    EXPECT_EQ(r.row_selector, "/r/e");
}

TEST(RowNodeNameStrategy, WritesTheRegisteredPrefixOfADefaultNamespace) {
    auto doc = parse_xml(kFeed);
    const DetectResult r = run_detect(doc, row_node_name(u"entry"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/ns:feed");
    EXPECT_EQ(r.row_selector, "/ns:feed/ns:entry");
    EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"51.5", "51.4", "51.3"}));
}

TEST(RowNodeNameStrategy, AnUnknownNameFailsBeforeDetectionStarts) {
    log::LogCapture capture(log::kProgressMask);
    const auto error = detect_error(kLibrary, row_node_name(u"magazine"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:common:NodeNameNotFound");
    EXPECT_EQ(error->arguments, (Args{"RowNodeName", "magazine", "test.xml"}));
    const auto messages = capture.messages();
    EXPECT_EQ(std::find(messages.begin(), messages.end(), "Starting detection..."), messages.end());
}

TEST(RowNodeNameStrategy, APathThatCannotBeWrittenFailsBeforeDetectionStarts) {
    HintFields hints = row_node_name(u"entry");
    hints.DetectNamespaces = false;
    log::LogCapture capture(log::kProgressMask);
    const auto error = detect_error(kFeed, hints);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint");
    EXPECT_EQ(error->arguments, (Args{"RowSelector", "/feed/entry", "RowNodeName", "entry"}));
    const auto messages = capture.messages();
    EXPECT_EQ(std::find(messages.begin(), messages.end(), "Starting detection..."), messages.end());
}

}  // namespace
