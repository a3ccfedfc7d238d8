#include "detection/strategy/TableSelectorStrategy.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"
#include "host/utf.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;

HintFields table_selector(std::u16string selector) {
    HintFields hints;
    hints.TableSelector = std::move(selector);
    return hints;
}

TEST(TableSelectorStrategy, SearchesBelowTheSelectedElementAndPrefixesTheHint) {
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, table_selector(u"//books"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "//books");
    EXPECT_EQ(r.row_selector, "(//books)/book");
    EXPECT_EQ(r.names, (Args{"@id", "title", "price"}));
    EXPECT_EQ(r.selectors, (Args{"(//books)/book/@id", "(//books)/book/title", "(//books)/book/price"}));
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"b1", "b2", "b3"}));
}

TEST(TableSelectorStrategy, OnlyTheFirstSelectedElementIsSearched) {
    // The union selects both tables; the shelves come first. The parentheses keep the union
    // whole, so the reported row selector still selects the shelves' rows.
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, table_selector(u"//books | //shelves"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "//books | //shelves");
    EXPECT_EQ(r.row_selector, "(//books | //shelves)/shelf");
    EXPECT_EQ(r.names, (Args{"code", "floor"}));
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"A", "B", "C"}));
}

TEST(TableSelectorStrategy, SelectorsOfATableFoundDeeperStartFromTheHint) {
    // With a row element the variables hang below the row selector; without one, below the
    // table's own path, which must then keep the steps the search took below the hint.
    auto rows = parse_xml("<doc><wrap><row><v>1</v></row><row><v>2</v></row></wrap></doc>");
    DetectResult r = run_detect(rows, table_selector(u"/doc"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/doc");
    EXPECT_EQ(r.row_selector, "(/doc)/wrap/row");
    EXPECT_EQ(select_values(*rows, r.selectors.at(0), r.namespaces), (Args{"1", "2"}));

    auto pairs = parse_xml("<doc><wrap><k>a</k><v>1</v><k>b</k><v>2</v><k>c</k><v>3</v></wrap></doc>");
    r = run_detect(pairs, table_selector(u"/doc"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/doc");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_EQ(r.selectors, (Args{"(/doc)/wrap/k", "(/doc)/wrap/v"}));
    EXPECT_EQ(select_values(*pairs, r.selectors[1], r.namespaces), (Args{"1", "2", "3"}));
}

TEST(TableSelectorStrategy, EchoesTheHintWhenNoTableIsFound) {
    const DetectResult r = run_detect(kLibrary, table_selector(u"//book[2]"));
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "//book[2]");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_TRUE(r.selectors.empty());
}

TEST(TableSelectorStrategy, UsesTheRegisteredPrefixesOfADefaultNamespace) {
    auto doc = parse_xml(kFeed);
    const DetectResult r = run_detect(doc, table_selector(u"/ns:feed"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.row_selector, "(/ns:feed)/ns:entry");
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"North", "South", "East"}));
}

TEST(TableSelectorStrategy, SelectionsWithoutALeadingElementAreInvalid) {
    // Attributes and text first fail even though elements follow in the union.
    for (const std::u16string selector :
         {u"//magazine", u"//book/@id", u"//title/text()", u"//book[1]/@id | //book[2]", u"//code/text() | //books"}) {
        const auto error = detect_error(kLibrary, table_selector(selector));
        ASSERT_TRUE(error) << fl::i18n::ustring_to_utf8(selector);
        EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:TableSelectorInvalidSelection");
        EXPECT_TRUE(error->arguments.empty());
    }
}

TEST(TableSelectorStrategy, TranslatesTheXPathErrors) {
    struct Case {
        std::u16string selector;
        std::string id;
        Args arguments;
    };
    const std::vector<Case> cases{
        {u"count(//a)", "TOLVEN:io:xml:detection:TableSelectorNotNodeSet", {"number", "count(//a)"}},
        {u"1 = 1", "TOLVEN:io:xml:detection:TableSelectorNotNodeSet", {"boolean", "1 = 1"}},
        {u"string(//code)", "TOLVEN:io:xml:detection:TableSelectorNotNodeSet", {"string", "string(//code)"}},
        {u"//x:books", "TOLVEN:io:xml:detection:TableSelectorUnregisteredNamespace", {"x"}},
        {u"//[", "TOLVEN:io:xml:detection:TableSelectorUnknownError", {"//[: Invalid expression"}},
    };
    for (const auto& c : cases) {
        const auto error = detect_error(kLibrary, table_selector(c.selector));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments);
    }
}

}  // namespace
