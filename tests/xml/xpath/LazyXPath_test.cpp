#include "xml/xpath/LazyXPath.hpp"

#include <gtest/gtest.h>

#include <string>

#include "xml/errors.hpp"
#include "xml/support/parse_xml.hpp"
#include "xml/tree/Tree.hpp"

namespace {

using tolven::io::xml::common::error::XMLInvalidXPathExpression;
using tolven::io::xml::common::tree::Tree;
using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::io::xml::common::xpath::XPathIndexStyle;
using tolven::test::element_children;
using tolven::test::parse_xml;
using tolven::test::root_of;

// The path the document walk gives node.
std::u16string path_to(const xmlNode* node, const NamespaceMap& namespaces, XPathIndexStyle style) {
    const Tree tree(node->doc, namespaces);
    auto it = tree.begin();
    while (it != tree.end() && *it != node) ++it;
    return it == tree.end() ? u"(not visited)" : it.xpath().materialize(style);
}

constexpr const char* kCatalog =
    "<catalog><info/><book><title/></book><note/><book><title/><title/></book></catalog>";

TEST(LazyXPath, IndexStyles) {
    const auto doc = parse_xml(kCatalog);
    const NamespaceMap none;
    const auto children = element_children(root_of(*doc));
    EXPECT_EQ(path_to(children[0], none, XPathIndexStyle::IndexRepeated), u"/catalog/info");
    EXPECT_EQ(path_to(element_children(children[1])[0], none, XPathIndexStyle::IndexRepeated), u"/catalog/book[1]/title");
    const xmlNode* title = element_children(children[3])[1];
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::IndexRepeated), u"/catalog/book[2]/title[2]");
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::IndexAll), u"/catalog[1]/book[2]/title[2]");
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::NoIndex), u"/catalog/book/title");
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::NoIndexAll), u"/catalog/book/title");
}

TEST(LazyXPath, LikeNamedMeansSameNamespaceUriAndLocalName) {
    // x:row and y:row share a URI; the unprefixed row and z:row are other names.
    const auto doc = parse_xml(
        "<t xmlns:x='urn:r' xmlns:y='urn:r' xmlns:z='urn:z'><x:row/><row/><z:row/><y:row/></t>");
    const NamespaceMap namespaces{{"urn:r", "r"}, {"urn:z", "z"}};
    const auto rows = element_children(root_of(*doc));
    EXPECT_EQ(path_to(rows[0], namespaces, XPathIndexStyle::IndexRepeated), u"/t/r:row[1]");
    EXPECT_EQ(path_to(rows[1], namespaces, XPathIndexStyle::IndexRepeated), u"/t/row");
    EXPECT_EQ(path_to(rows[2], namespaces, XPathIndexStyle::IndexRepeated), u"/t/z:row");
    EXPECT_EQ(path_to(rows[3], namespaces, XPathIndexStyle::IndexRepeated), u"/t/r:row[2]");
}

TEST(LazyXPath, LocalNameWithColonBecomesALocalNameSelector) {
    const auto doc = parse_xml("<a><u:b/><u:b/></a>");
    const xmlNode* b = element_children(root_of(*doc))[1];
    EXPECT_EQ(path_to(b, {}, XPathIndexStyle::IndexRepeated), u"/a/*[local-name()='u:b'][2]");
    EXPECT_EQ(path_to(b, {}, XPathIndexStyle::NoIndexAll), u"/a/*[local-name()='u:b']");
}

TEST(LazyXPath, UnregisteredNamespaceCarriesTheTextItWouldHaveWritten) {
    const auto doc = parse_xml("<a xmlns:k='urn:k'><k:b/><k:b/></a>");
    const xmlNode* b = element_children(root_of(*doc))[0];
    try {
        path_to(b, {}, XPathIndexStyle::IndexRepeated);
        FAIL() << "no error raised";
    } catch (const XMLInvalidXPathExpression& error) {
        EXPECT_EQ(error.strings(), std::vector<std::u16string>{u"/a/b[1]"});
        EXPECT_STREQ(error.what(), "/a/b[1]");
    }
}

}  // namespace
