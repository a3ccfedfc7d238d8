#include "detection/strategy/RowSelectorStrategy.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;

HintFields row_selector(std::u16string selector) {
    HintFields hints;
    hints.RowSelector = std::move(selector);
    return hints;
}

TEST(RowSelectorStrategy, BuildsTheTableFromTheSelectedRows) {
    // The variables are written below the hint in parentheses; the row selector is the hint as given.
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, row_selector(u"//book[price > 8]"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "//book[price > 8]");
    EXPECT_EQ(r.selectors, (Args{"(//book[price > 8])/@id", "(//book[price > 8])/title", "(//book[price > 8])/price"}));
    EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"Dune", "Ulysses"}));
}

TEST(RowSelectorStrategy, RowsMayComeFromDifferentParentsAndNames) {
    // One row entry, named after the first row, takes the variables of every row.
    auto doc = parse_xml("<r><g><item><v>1</v></item></g><h><thing><v>2</v><w>x</w></thing><thing><v>3</v></thing></h></r>");
    const DetectResult r = run_detect(doc, row_selector(u"//item | //thing"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.row_selector, "//item | //thing");
    EXPECT_EQ(r.names, (Args{"v", "w"}));
    EXPECT_EQ(r.selectors[0], "(//item | //thing)/v");
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"1", "2", "3"}));
}

TEST(RowSelectorStrategy, ReportsTheHintWhenTheRowsMakeNoTable) {
    const DetectResult r = run_detect("<r><e><a>1</a></e><e><b>2</b></e><e><c>3</c></e></r>", row_selector(u"//e"));
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "//e");
}

TEST(RowSelectorStrategy, EveryRowMustBeAnElement) {
    struct Case {
        std::u16string selector;
        std::string id;
        Args arguments;
    };
    const std::vector<Case> cases{
        {u"//magazine", "TOLVEN:io:xml:detection:RowSelectorInvalidSelection", {}},
        {u"//book/@id", "TOLVEN:io:xml:detection:RowSelectorAttributeSelected", {"//book/@id"}},
        // One attribute among elements is enough.
        {u"//book | //book[2]/@id", "TOLVEN:io:xml:detection:RowSelectorAttributeSelected", {"//book | //book[2]/@id"}},
        {u"//title/text()", "TOLVEN:io:xml:detection:RowSelectorInvalidSelection", {}},
        {u"//book | //price/text()", "TOLVEN:io:xml:detection:RowSelectorInvalidSelection", {}},
    };
    for (const auto& c : cases) {
        const auto error = detect_error(kLibrary, row_selector(c.selector));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments);
    }
}

TEST(RowSelectorStrategy, TranslatesTheXPathErrors) {
    struct Case {
        std::u16string selector;
        std::string id;
        Args arguments;
    };
    const std::vector<Case> cases{
        {u"count(//a)", "TOLVEN:io:xml:detection:RowSelectorNotNodeSet", {"number", "count(//a)"}},
        {u"1 = 1", "TOLVEN:io:xml:detection:RowSelectorNotNodeSet", {"boolean", "1 = 1"}},
        {u"//x:book", "TOLVEN:io:xml:detection:RowSelectorUnregisteredNamespace", {"x"}},
        {u"//[", "TOLVEN:io:xml:detection:RowSelectorUnknownError", {"//[: Invalid expression"}},
    };
    for (const auto& c : cases) {
        const auto error = detect_error(kLibrary, row_selector(c.selector));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments);
    }
}

}  // namespace
