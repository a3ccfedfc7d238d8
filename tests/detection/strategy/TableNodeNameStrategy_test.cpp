#include "detection/strategy/TableNodeNameStrategy.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"
#include "xml/log/getLogger.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;
namespace log = tolven::io::xml::common::log;

HintFields table_node_name(std::u16string name) {
    HintFields hints;
    hints.TableNodeName = std::move(name);
    return hints;
}

TEST(TableNodeNameStrategy, SearchesOnlyBelowTheNamedElement) {
    // The shelves come first and would win without the hint.
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, table_node_name(u"books"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/library/books");
    EXPECT_EQ(r.row_selector, "/library/books/book");
    EXPECT_EQ(r.names, (Args{"@id", "title", "price"}));
    EXPECT_EQ(r.selectors, (Args{"/library/books/book/@id", "/library/books/book/title", "/library/books/book/price"}));
    EXPECT_EQ(select_values(*doc, r.selectors[2], r.namespaces), (Args{"9.5", "7.25", "12"}));
}

TEST(TableNodeNameStrategy, ReportsTheNamedElementsPathWhenNoTableIsBelowIt) {
    // The first code is in the first of several shelves: its path carries that position.
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, table_node_name(u"code"));
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "/library/shelves/shelf[1]/code");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_TRUE(r.names.empty());
    EXPECT_EQ(select_values(*doc, r.table_selector, r.namespaces), (Args{"A"}));
}

TEST(TableNodeNameStrategy, KeepsTheNamedElementAsTableSelectorWhenTheTableIsDeeper) {
    const DetectResult r = run_detect(kLibrary, table_node_name(u"library"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/library");
    EXPECT_EQ(r.row_selector, "/library/shelves/shelf");
}

TEST(TableNodeNameStrategy, FindsElementsOfADefaultNamespaceWithOrWithoutTheRegisteredPrefix) {
    auto doc = parse_xml(kFeed);
    for (const std::u16string name : {u"feed", u"ns:feed"}) {
        const DetectResult r = run_detect(doc, table_node_name(name));
        ASSERT_TRUE(r.detected);
        EXPECT_EQ(r.table_selector, "/ns:feed");
        EXPECT_EQ(r.row_selector, "/ns:feed/ns:entry");
        EXPECT_EQ(r.names, (Args{"title", "geo:lat"}));
        EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"51.5", "51.4", "51.3"}));
    }
}

TEST(TableNodeNameStrategy, AnUnknownNameFailsBeforeDetectionStarts) {
    log::LogCapture capture(log::kProgressMask);
    const auto error = detect_error(kLibrary, table_node_name(u"magazine"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:common:NodeNameNotFound");
    EXPECT_EQ(error->arguments, (Args{"TableNodeName", "magazine", "test.xml"}));
    const auto messages = capture.messages();
    EXPECT_NE(std::find(messages.begin(), messages.end(), "Detecting TableSelector from TableNodeName magazine..."),
              messages.end());
    EXPECT_EQ(std::find(messages.begin(), messages.end(), "Starting detection..."), messages.end());
}

TEST(TableNodeNameStrategy, APathThatCannotBeWrittenIsReportedWithTheHint) {
    // Without namespace detection the feed's default namespace has no prefix to write it with.
    HintFields hints = table_node_name(u"title");
    hints.DetectNamespaces = false;
    const auto error = detect_error(kFeed, hints);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint");
    EXPECT_EQ(error->arguments, (Args{"TableSelector", "/feed/title", "TableNodeName", "title"}));
}

}  // namespace
