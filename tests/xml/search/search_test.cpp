#include "xml/search/search.hpp"

#include <gtest/gtest.h>

#include "host/utf.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

namespace search = tolven::io::xml::common::search;
using tolven::io::xml::common::tree::Tree;
using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::io::xml::common::xpath::XPathIndexStyle;
using tolven::test::parse_xml;
using tolven::test::raised_by;

// Where the search for name lands, written with positions on repeated steps; "" when not found.
std::string found_path(const char* xml, const std::u16string& name, const NamespaceMap& namespaces = {}) {
    auto doc = parse_xml(xml);
    const Tree tree(doc->doc().get(), namespaces);
    const search::SearchResult result = search::searchForRootNodeByName(tree, name);
    if (!result.found()) return "";
    EXPECT_EQ(result.xpath().back(), result.node());
    return fl::i18n::ustring_to_utf8(result.xpath().materialize(XPathIndexStyle::IndexRepeated));
}

TEST(SearchForRootNodeByName, TakesTheFirstElementInDocumentOrder) {
    // Pre-order: a deeper element that comes first wins over a shallower later one.
    EXPECT_EQ(found_path("<r><x><t/></x><t/></r>", u"t"), "/r/x/t");
    EXPECT_EQ(found_path("<r><t/><t/><x><t/></x></r>", u"t"), "/r/t[1]");
    EXPECT_EQ(found_path("<r><t/></r>", u"r"), "/r");
    EXPECT_EQ(found_path("<r><t/></r>", u"nope"), "");
    // Attributes are not elements.
    EXPECT_EQ(found_path(R"(<r a="1"><b/></r>)", u"a"), "");
}

TEST(SearchForRootNodeByName, UnprefixedNameMatchesTheLocalNameWhateverThePrefix) {
    const char* xml = R"(<r xmlns:p="urn:p" xmlns:q="urn:q"><p:item/><item/></r>)";
    const NamespaceMap namespaces{{"urn:p", "p"}, {"urn:q", "q"}};
    EXPECT_EQ(found_path(xml, u"item", namespaces), "/r/p:item");
}

TEST(SearchForRootNodeByName, PrefixedNameMatchesTheWrittenOrTheRegisteredPrefix) {
    // The document writes urn:p as its default namespace; the run registered it as "ns".
    const char* xml = R"(<r><q:item xmlns:q="urn:q"/><item xmlns="urn:p"/></r>)";
    const NamespaceMap namespaces{{"urn:p", "ns"}, {"urn:q", "q2"}};
    EXPECT_EQ(found_path(xml, u"ns:item", namespaces), "/r/ns:item");
    EXPECT_EQ(found_path(xml, u"q:item", namespaces), "/r/q2:item");
    EXPECT_EQ(found_path(xml, u"q2:item", namespaces), "/r/q2:item");
    EXPECT_EQ(found_path(xml, u"other:item", namespaces), "");
    EXPECT_EQ(found_path(xml, u"ns:r", namespaces), "");
}

TEST(HandleSearchByNodeNameFailure, RaisesNodeNameNotFoundWithHintNameAndSource) {
    const NamespaceMap namespaces;
    const search::SearchResult nothing(namespaces);
    EXPECT_FALSE(nothing.found());
    const auto raised =
        raised_by([&] { search::handleSearchByNodeNameFailure(nothing, u"data.xml", u"row", u"RowNodeName"); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:NodeNameNotFound");
    EXPECT_EQ(raised.arguments, (std::vector<std::string>{"RowNodeName", "row", "data.xml"}));
}

TEST(HasWrittenName, ComparesPrefixAndLocalNameAsWritten) {
    auto doc = parse_xml(R"(<r xmlns="urn:d" xmlns:p="urn:p"><p:v p:a="1" b="2"/></r>)");
    const xmlNode* root = xmlDocGetRootElement(doc->doc().get());
    const xmlNode* v = xmlFirstElementChild(const_cast<xmlNode*>(root));
    EXPECT_TRUE(search::has_written_name(root, "r"));
    EXPECT_FALSE(search::has_written_name(root, "ns:r"));
    EXPECT_TRUE(search::has_written_name(v, "p:v"));
    EXPECT_FALSE(search::has_written_name(v, "v"));
    EXPECT_FALSE(search::has_written_name(v, "p:"));
    EXPECT_FALSE(search::has_written_name(v, "pxv"));
    const auto* a = reinterpret_cast<const xmlNode*>(v->properties);
    const auto* b = reinterpret_cast<const xmlNode*>(v->properties->next);
    EXPECT_TRUE(search::has_written_name(a, "p:a"));
    EXPECT_FALSE(search::has_written_name(a, "a"));
    EXPECT_TRUE(search::has_written_name(b, "b"));
}

}  // namespace
