#include "xml/xpath/LazyXPath.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "xml/errors.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::error::XMLInvalidXPathExpression;
using tolven::io::xml::common::xpath::LazyXPath;
using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::io::xml::common::xpath::XPathIndexStyle;
using tolven::test::element_children;
using tolven::test::parse_xml;
using tolven::test::root_of;

// Pushes the path from the root element to node, positions counted among like-named siblings
// the way the table search counts them.
void push_path(LazyXPath& path, const xmlNode* node) {
    std::vector<const xmlNode*> chain;
    for (const xmlNode* n = node; n != nullptr && n->type == XML_ELEMENT_NODE; n = n->parent) chain.insert(chain.begin(), n);
    for (const xmlNode* n : chain) {
        unsigned long position = 1;
        for (const xmlNode* s = n->prev; s != nullptr; s = s->prev)
            if (s->type == XML_ELEMENT_NODE && xmlStrEqual(s->name, n->name) &&
                xmlStrEqual(s->ns ? s->ns->href : nullptr, n->ns ? n->ns->href : nullptr))
                ++position;
        path.push_back(n, position);
    }
}

std::u16string path_to(const xmlNode* node, const NamespaceMap& namespaces, XPathIndexStyle style) {
    LazyXPath path(namespaces);
    push_path(path, node);
    return path.materialize(style);
}

constexpr const char* kCatalog =
    "<catalog><info/><book><title/></book><note/><book><title/><title/></book></catalog>";

TEST(LazyXPath, Style0IndexesOnlyRepeatedSiblings) {
    const auto doc = parse_xml(kCatalog);
    const NamespaceMap none;
    const auto books = element_children(root_of(*doc));
    EXPECT_EQ(path_to(root_of(*doc), none, XPathIndexStyle::IndexRepeated), u"/catalog");
    EXPECT_EQ(path_to(books[0], none, XPathIndexStyle::IndexRepeated), u"/catalog/info");
    EXPECT_EQ(path_to(books[1], none, XPathIndexStyle::IndexRepeated), u"/catalog/book[1]");
    EXPECT_EQ(path_to(element_children(books[1])[0], none, XPathIndexStyle::IndexRepeated), u"/catalog/book[1]/title");
    EXPECT_EQ(path_to(element_children(books[3])[1], none, XPathIndexStyle::IndexRepeated),
              u"/catalog/book[2]/title[2]");
    EXPECT_EQ(path_to(element_children(books[3])[0], none, XPathIndexStyle::IndexRepeated),
              u"/catalog/book[2]/title[1]");
}

TEST(LazyXPath, Style1IndexesEveryStepAndStyles2And3NoStep) {
    const auto doc = parse_xml(kCatalog);
    const NamespaceMap none;
    const xmlNode* title = element_children(element_children(root_of(*doc))[3])[1];
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::IndexAll), u"/catalog[1]/book[2]/title[2]");
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::NoIndex), u"/catalog/book/title");
    EXPECT_EQ(path_to(title, none, XPathIndexStyle::NoIndexAll), u"/catalog/book/title");
}

TEST(LazyXPath, LikeNamedMeansSameNamespaceUriAndLocalName) {
    // x:row and y:row share a URI; the unprefixed row and z:row are other names.
    const auto doc = parse_xml(
        "<t xmlns:x='urn:r' xmlns:y='urn:r' xmlns:z='urn:z'><x:row/><row/><z:row/><y:row/><only/></t>");
    const NamespaceMap namespaces{{"urn:r", "r"}, {"urn:z", "z"}};
    const auto rows = element_children(root_of(*doc));
    EXPECT_EQ(path_to(rows[0], namespaces, XPathIndexStyle::IndexRepeated), u"/t/r:row[1]");
    EXPECT_EQ(path_to(rows[1], namespaces, XPathIndexStyle::IndexRepeated), u"/t/row");
    EXPECT_EQ(path_to(rows[2], namespaces, XPathIndexStyle::IndexRepeated), u"/t/z:row");
    EXPECT_EQ(path_to(rows[3], namespaces, XPathIndexStyle::IndexRepeated), u"/t/r:row[2]");
    EXPECT_EQ(path_to(rows[4], namespaces, XPathIndexStyle::IndexRepeated), u"/t/only");
}

TEST(LazyXPath, DefaultNamespaceIsWrittenWithItsRegisteredPrefix) {
    const auto doc = parse_xml("<feed xmlns='urn:atom'><entry/><entry/></feed>");
    const NamespaceMap namespaces{{"urn:atom", "ns"}};
    const xmlNode* second = element_children(root_of(*doc))[1];
    EXPECT_EQ(path_to(second, namespaces, XPathIndexStyle::IndexRepeated), u"/ns:feed/ns:entry[2]");
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
        EXPECT_EQ(error.message(), u"/a/b[1]");
        EXPECT_STREQ(error.what(), "/a/b[1]");
    }
}

TEST(LazyXPath, EmptyPathIsEmptyTextAndPopBackUndoesPushBack) {
    const auto doc = parse_xml(kCatalog);
    const NamespaceMap none;
    LazyXPath path(none);
    EXPECT_EQ(path.materialize(XPathIndexStyle::IndexAll), u"");
    path.push_back(root_of(*doc), 1);
    path.push_back(element_children(root_of(*doc))[3], 2);
    EXPECT_EQ(path.size(), 2u);
    EXPECT_EQ(path.materialize(XPathIndexStyle::IndexRepeated), u"/catalog/book[2]");
    path.pop_back();
    EXPECT_EQ(path.back(), root_of(*doc));
    EXPECT_EQ(path.materialize(XPathIndexStyle::IndexRepeated), u"/catalog");
    path.pop_back();
    EXPECT_TRUE(path.empty());
}

}  // namespace
