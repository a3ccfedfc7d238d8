#include "xml/xpath/names.hpp"

#include <gtest/gtest.h>

#include "xml/support/parse_xml.hpp"

namespace {

using namespace tolven::io::xml::common::xpath;
using tolven::test::element_children;
using tolven::test::parse_xml;
using tolven::test::root_of;

TEST(Names, LookupNamespacePrefix) {
    const NamespaceMap namespaces{{"urn:a", "a"}};
    EXPECT_EQ(lookup_namespace_prefix(namespaces, "urn:a"), "a");
    EXPECT_EQ(lookup_namespace_prefix(namespaces, "urn:other"), "");
    EXPECT_EQ(lookup_namespace_prefix(NamespaceMap{{"", "odd"}}, ""), "");
}

TEST(Names, WrittenNamesOfDeclarationsElementsAndAttributes) {
    const auto doc = parse_xml("<r xmlns='urn:d' xmlns:p='urn:p'><p:e p:at='1' plain='2'/><e/></r>");
    const xmlNode* r = root_of(*doc);
    ASSERT_NE(r->nsDef, nullptr);
    EXPECT_EQ(makeWYSIWYGNodeName(r->nsDef), u"xmlns");
    EXPECT_EQ(makeWYSIWYGNodeName(r->nsDef->next), u"xmlns:p");

    const auto children = element_children(r);
    EXPECT_EQ(written_name(children[0]), u"p:e");
    EXPECT_EQ(written_name(children[1]), u"e");  // default namespace: no prefix is written
    const xmlAttr* first = children[0]->properties;
    EXPECT_EQ(written_name(reinterpret_cast<const xmlNode*>(first)), u"p:at");
    EXPECT_EQ(written_name(reinterpret_cast<const xmlNode*>(first->next)), u"plain");
}

}  // namespace
