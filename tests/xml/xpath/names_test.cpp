#include "xml/xpath/names.hpp"

#include <gtest/gtest.h>

#include "xml/string/to_ustring.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

using namespace tolven::io::xml::common::xpath;
using tolven::io::xml::common::string::to_ustring;
using tolven::test::element_children;
using tolven::test::parse_xml;
using tolven::test::root_of;

TEST(Names, LookupNamespacePrefix) {
    const NamespaceMap namespaces{{"urn:a", "a"}};
    EXPECT_EQ(lookup_namespace_prefix(namespaces, "urn:a"), "a");
    EXPECT_EQ(lookup_namespace_prefix(namespaces, "urn:other"), "");
    EXPECT_EQ(lookup_namespace_prefix(namespaces, ""), "");
    EXPECT_EQ(lookup_namespace_prefix(NamespaceMap{{"", "odd"}}, ""), "");
}

TEST(Names, SelectorPieces) {
    EXPECT_TRUE(has_colon(u"a:b"));
    EXPECT_FALSE(has_colon(u"ab"));
    EXPECT_EQ(add_colon(u"p"), u"p:");
    EXPECT_EQ(add_colon(u""), u"");
    EXPECT_EQ(make_local_name_selector(u"a:b"), u"*[local-name()='a:b']");
}

TEST(Names, WrittenNamesOfDeclarationsElementsAndAttributes) {
    const auto doc = parse_xml("<r xmlns='urn:d' xmlns:p='urn:p'><p:e p:at='1' plain='2'/><e/><u:x/></r>");
    const xmlNode* r = root_of(*doc);
    ASSERT_NE(r->nsDef, nullptr);
    EXPECT_EQ(makeWYSIWYGNodeName(r->nsDef), u"xmlns");
    EXPECT_EQ(makeWYSIWYGNodeName(r->nsDef->next), u"xmlns:p");

    const auto children = element_children(r);
    EXPECT_EQ(written_name(children[0]), u"p:e");
    EXPECT_EQ(written_name(children[1]), u"e");  // default namespace: no prefix is written
    EXPECT_EQ(written_name(children[2]), u"u:x");
    const xmlAttr* first = children[0]->properties;
    EXPECT_EQ(written_name(reinterpret_cast<const xmlNode*>(first)), u"p:at");
    EXPECT_EQ(written_name(reinterpret_cast<const xmlNode*>(first->next)), u"plain");
    EXPECT_EQ(written_name(nullptr), u"");
}

TEST(Names, ToUstringConvertsUtf8AndNull) {
    EXPECT_EQ(to_ustring(reinterpret_cast<const xmlChar*>("gr\xC3\xBC\xC3\x9F")), u"gr\u00FC\u00DF");
    EXPECT_EQ(to_ustring(static_cast<const xmlChar*>(nullptr)), u"");
    EXPECT_EQ(to_ustring(std::string_view("\xF0\x9F\x98\x80")), u"\U0001F600");
}

}  // namespace
