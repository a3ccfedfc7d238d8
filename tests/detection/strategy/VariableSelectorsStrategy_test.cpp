#include "detection/strategy/VariableSelectorsStrategy.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;

HintFields variable_selectors(std::vector<std::u16string> selectors) {
    HintFields hints;
    hints.VariableSelectors = std::move(selectors);
    return hints;
}

TEST(VariableSelectorsStrategy, EachSelectorIsOneVariableWithoutATable) {
    const DetectResult r = run_detect(kLibrary, variable_selectors({u"//book/title", u"//book/@id", u"//price"}));
    EXPECT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_EQ(r.selectors, (Args{"//book/title", "//book/@id", "//price"}));
    EXPECT_EQ(r.names, (Args{"title", "@id", "price"}));
    EXPECT_EQ(r.types, (Args{"string", "string", "double"}));
}

TEST(VariableSelectorsStrategy, NamesAreWrittenAsInTheDocument) {
    // The default namespace has no prefix in the document, whatever prefix the selector uses.
    const DetectResult r = run_detect(kFeed, variable_selectors({u"//ns:entry/ns:title", u"//geo:lat"}));
    EXPECT_EQ(r.names, (Args{"title", "geo:lat"}));
    EXPECT_EQ(r.types, (Args{"string", "double"}));
    EXPECT_EQ(r.namespaces.size(), 2u);
}

TEST(VariableSelectorsStrategy, MixedSelectionsTakeTheNameOfTheFirstNode) {
    const DetectResult r = run_detect(kLibrary, variable_selectors({u"//book/@id | //price", u"//floor | //shelf"}));
    EXPECT_EQ(r.names, (Args{"@id", "shelf"}));
}

TEST(VariableSelectorsStrategy, BlankAndMissingTextGiveNoValues) {
    // CDATA counts as text; an element without non-blank text adds nothing to the vote.
    const char* xml = "<r><v> </v><v><![CDATA[12]]></v><v/><w>\n\t</w><w/></r>";
    const DetectResult r = run_detect(xml, variable_selectors({u"//v", u"//w"}));
    EXPECT_EQ(r.types, (Args{"double", "string"}));
}

TEST(VariableSelectorsStrategy, TheVoteTakesValuesFromTheFirstNodesOnly) {
    // 250 numbers, then more texts than numbers: only the numbers are looked at.
    std::string xml = "<r>";
    for (int i = 0; i < 250; ++i) xml += "<v>" + std::to_string(i) + "</v>";
    for (int i = 0; i < 260; ++i) xml += "<v>text</v>";
    xml += "<v/></r>";
    EXPECT_EQ(run_detect(xml, variable_selectors({u"//v"})).types, (Args{"double"}));
}

TEST(VariableSelectorsStrategy, SelectionsMustBeElementsOrAttributes) {
    struct Case {
        std::u16string selector;
        std::string id;
        Args arguments;
    };
    const std::vector<Case> cases{
        {u"//magazine", "TOLVEN:io:xml:detection:VariableSelectorsInvalidSelection", {}},
        {u"//title/text()", "TOLVEN:io:xml:detection:VariableSelectorsNotElementOrAttribute", {"//title/text()"}},
        // A late text node fails as well as a first one.
        {u"//title | //book[3]/title/text()",
         "TOLVEN:io:xml:detection:VariableSelectorsNotElementOrAttribute",
         {"//title | //book[3]/title/text()"}},
    };
    for (const auto& c : cases) {
        const auto error = detect_error(kLibrary, variable_selectors({c.selector}));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments);
    }
    const auto comment = detect_error("<r><!--note--><v>1</v></r>", variable_selectors({u"//comment()"}));
    ASSERT_TRUE(comment);
    EXPECT_EQ(comment->id, "TOLVEN:io:xml:detection:VariableSelectorsNotElementOrAttribute");
}

TEST(VariableSelectorsStrategy, TranslatesTheXPathErrors) {
    struct Case {
        std::u16string selector;
        std::string id;
        Args arguments;
    };
    const std::vector<Case> cases{
        {u"count(//a)", "TOLVEN:io:xml:detection:VariableSelectorsNotNodeSet", {"number", "count(//a)"}},
        {u"string(//title)", "TOLVEN:io:xml:detection:VariableSelectorsNotNodeSet", {"string", "string(//title)"}},
        {u"//title = 'Dune'", "TOLVEN:io:xml:detection:VariableSelectorsNotNodeSet", {"boolean", "//title = 'Dune'"}},
        {u"//x:title", "TOLVEN:io:xml:detection:VariableSelectorsUnregisteredNamespace", {"x"}},
        {u"//[", "TOLVEN:io:xml:detection:VariableSelectorsUnknownError", {"//[: Invalid expression"}},
    };
    for (const auto& c : cases) {
        // The first failing selector ends the call, whatever follows it.
        const auto error = detect_error(kLibrary, variable_selectors({u"//title", c.selector, u"//magazine"}));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments);
    }
}

TEST(VariableSelectorsStrategy, AnEmptySelectorIsAnUnknownError) {
    const auto error = detect_error(kLibrary, variable_selectors({u""}));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:VariableSelectorsUnknownError");
}

}  // namespace
