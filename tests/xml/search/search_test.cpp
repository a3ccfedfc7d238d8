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
std::string found_path(const char* xml, const std::u16string& name, const NamespaceMap& namespaces) {
    auto doc = parse_xml(xml);
    const Tree tree(doc->doc().get(), namespaces);
    const search::SearchResult result = search::searchForRootNodeByName(tree, name);
    if (!result.found()) return "";
    EXPECT_EQ(result.xpath().back(), result.node());
    return fl::i18n::ustring_to_utf8(result.xpath().materialize(XPathIndexStyle::IndexRepeated));
}

TEST(SearchForRootNodeByName, FirstInDocumentOrderByLocalNameOrWrittenOrRegisteredPrefix) {
    // The last document writes urn:p as its default namespace; the run registered it as "ns".
    const char* defaulted = R"(<r><q:item xmlns:q="urn:q"/><item xmlns="urn:p"/></r>)";
    const struct {
        const char* xml;
        const char* name;
        const char* expected;
    } cases[] = {
        {"<r><x><t/></x><t/></r>", "t", "/r/x/t"},  // pre-order: a deeper, earlier element wins
        {"<r><t/><t/></r>", "t", "/r/t[1]"},
        {R"(<r a="1"><b/></r>)", "a", ""},  // attributes are not elements
        {R"(<r xmlns:p="urn:p"><p:item/><item/></r>)", "item", "/r/ns:item"},  // any prefix
        {defaulted, "ns:item", "/r/ns:item"},
        {defaulted, "q:item", "/r/q2:item"},
        {defaulted, "q2:item", "/r/q2:item"},
        {defaulted, "other:item", ""},
        {defaulted, "ns:r", ""},
    };
    const NamespaceMap namespaces{{"urn:p", "ns"}, {"urn:q", "q2"}};
    for (const auto& c : cases)
        EXPECT_EQ(found_path(c.xml, fl::i18n::utf8_to_ustring(c.name), namespaces), c.expected) << c.xml << " " << c.name;
}

TEST(HandleSearchByNodeNameFailure, RaisesNodeNameNotFoundWithHintNameAndSource) {
    const NamespaceMap namespaces;
    const search::SearchResult nothing(namespaces);
    const auto raised =
        raised_by([&] { search::handleSearchByNodeNameFailure(nothing, u"data.xml", u"row", u"RowNodeName"); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:NodeNameNotFound");
    EXPECT_EQ(raised.arguments, (std::vector<std::string>{"RowNodeName", "row", "data.xml"}));
}

TEST(HasWrittenName, ComparesPrefixAndLocalNameAsWritten) {
    auto doc = parse_xml(R"(<r xmlns="urn:d" xmlns:p="urn:p"><p:v p:a="1"/></r>)");
    const xmlNode* root = xmlDocGetRootElement(doc->doc().get());
    const xmlNode* v = xmlFirstElementChild(const_cast<xmlNode*>(root));
    EXPECT_TRUE(search::has_written_name(root, "r"));
    EXPECT_TRUE(search::has_written_name(v, "p:v"));
    EXPECT_FALSE(search::has_written_name(v, "v"));
    EXPECT_FALSE(search::has_written_name(v, "pxv"));
    const auto* a = reinterpret_cast<const xmlNode*>(v->properties);
    EXPECT_TRUE(search::has_written_name(a, "p:a"));
    EXPECT_FALSE(search::has_written_name(a, "a"));
}

}  // namespace
