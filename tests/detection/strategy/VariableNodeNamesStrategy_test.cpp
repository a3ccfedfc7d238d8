#include "detection/strategy/VariableNodeNamesStrategy.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"
#include "host/utf.hpp"
#include "xml/log/getLogger.hpp"

namespace {

using namespace tolven::testing;
using Args = std::vector<std::string>;
namespace log = tolven::io::xml::common::log;

HintFields variable_node_names(std::vector<std::u16string> names, bool import_attributes = true) {
    HintFields hints;
    hints.VariableNodeNames = std::move(names);
    hints.ImportAttributes = import_attributes;
    return hints;
}

TEST(VariableNodeNamesStrategy, EachNameBecomesTheSelectorOfItsFirstNode) {
    // Paths carry no positions, so each selector takes the name's every namesake on that path.
    auto doc = parse_xml(kLibrary);
    const DetectResult r = run_detect(doc, variable_node_names({u"title", u"id", u"code", u"title"}));
    EXPECT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_EQ(r.selectors, (Args{"/library/books/book/title", "/library/books/book/@id",
                                 "/library/shelves/shelf/code", "/library/books/book/title"}));
    EXPECT_EQ(r.names, (Args{"title", "@id", "code", "title"}));
    EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"b1", "b2", "b3"}));
}

TEST(VariableNodeNamesStrategy, NamesAreComparedAsWrittenPrefixIncluded) {
    const char* xml = R"(<r xmlns:p="urn:p"><p:v>1</p:v><v>x</v></r>)";
    auto doc = parse_xml(xml);
    const DetectResult r = run_detect(doc, variable_node_names({u"v", u"p:v"}));
    EXPECT_EQ(r.selectors, (Args{"/r/v", "/r/p:v"}));
    EXPECT_EQ(r.names, (Args{"v", "p:v"}));
    EXPECT_EQ(select_values(*doc, r.selectors[1], r.namespaces), (Args{"1"}));
    // The registered prefix of a default namespace is not how the document writes it.
    const auto error = detect_error(kFeed, variable_node_names({u"ns:title"}));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:VariableNodeNamesNonexistentNode");
}

TEST(VariableNodeNamesStrategy, WritesTheRegisteredPrefixesOfTheFoundPath) {
    auto doc = parse_xml(kFeed);
    const DetectResult r = run_detect(doc, variable_node_names({u"geo:lat"}));
    EXPECT_EQ(r.selectors, (Args{"/ns:feed/ns:entry/geo:lat"}));
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Args{"51.5", "51.4", "51.3"}));
}

TEST(VariableNodeNamesStrategy, TheFirstMatchInDocumentOrderWins) {
    // An element's own name comes before its attributes, and its attributes before its children.
    const char* xml = R"(<r><a code="x" a="y"><code>1</code></a></r>)";
    EXPECT_EQ(run_detect(xml, variable_node_names({u"code", u"a"})).selectors, (Args{"/r/a/@code", "/r/a"}));
}

TEST(VariableNodeNamesStrategy, WithoutAttributesTheWalkGoesOnToAnElement) {
    const char* xml = R"(<r><a code="x"/><b><code>1</code></b></r>)";
    EXPECT_EQ(run_detect(xml, variable_node_names({u"code"}, false)).selectors, (Args{"/r/b/code"}));
    const auto error = detect_error(kLibrary, variable_node_names({u"id"}, false));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:VariableNodeNamesImportAttributesFalse");
    EXPECT_EQ(error->arguments, (Args{"id"}));
}

TEST(VariableNodeNamesStrategy, NamespaceDeclarationsAreNotVariables) {
    for (const std::u16string name : {u"xmlns", u"xmlns:geo"}) {
        const auto error = detect_error(kFeed, variable_node_names({name}));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:VariableNodeNamesMatchesNamespaceDeclaration");
        EXPECT_EQ(error->arguments, (Args{fl::i18n::ustring_to_utf8(name)}));
    }
    // An element of that written name, anywhere, still wins.
    const char* xml = R"(<r xmlns:x="urn:x"><y><xmlns>1</xmlns></y></r>)";
    EXPECT_EQ(run_detect(xml, variable_node_names({u"xmlns"})).selectors, (Args{"/r/y/xmlns"}));
}

TEST(VariableNodeNamesStrategy, AnUnknownNameFailsBeforeDetectionStarts) {
    // The first failing name ends construction: the names after it are not searched.
    log::LogCapture capture(log::kProgressMask);
    const auto error = detect_error(kLibrary, variable_node_names({u"title", u"isbn", u"id"}, false));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:VariableNodeNamesNonexistentNode");
    EXPECT_EQ(error->arguments, (Args{"isbn", "test.xml"}));
    const auto messages = capture.messages();
    EXPECT_NE(std::find(messages.begin(), messages.end(), "title -> /library/books/book/title"), messages.end());
    EXPECT_EQ(std::find(messages.begin(), messages.end(), "Starting detection..."), messages.end());
}

TEST(VariableNodeNamesStrategy, APathThatCannotBeWrittenIsReportedWithTheName) {
    HintFields hints = variable_node_names({u"title"});
    hints.DetectNamespaces = false;
    const auto error = detect_error(kFeed, hints);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:DetectedUnsupportedSelectorDetectionHint");
    EXPECT_EQ(error->arguments, (Args{"VariableSelectors", "/feed/title", "VariableNodeNames", "title"}));
}

}  // namespace
