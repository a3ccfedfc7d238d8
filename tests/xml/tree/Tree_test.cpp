#include "xml/tree/Tree.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "host/utf.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::tree::Tree;
using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::io::xml::common::xpath::XPathIndexStyle;
using tolven::test::find_element;
using tolven::test::parse_xml;

std::string path_of(const Tree::Iterator& it, XPathIndexStyle style) {
    return fl::i18n::ustring_to_utf8(it.xpath().materialize(style));
}

TEST(Tree, VisitsElementsInDocumentOrderWithTheirDepth) {
    // Text, comments and processing instructions are not visited; the walk climbs back over
    // several levels at once (after f) and ends after the root's last descendant.
    auto doc = parse_xml(
        "<?pi x?><r>text<a><b/><!--c--><c><d><e><f/></e></d></c></a><?pi y?><g>t<h/></g></r><!--after-->");
    const NamespaceMap namespaces;
    const Tree tree(doc->doc().get(), namespaces);
    std::vector<std::pair<std::string, std::size_t>> visited;
    for (auto it = tree.begin(); it != tree.end(); ++it)
        visited.emplace_back(reinterpret_cast<const char*>((*it)->name), it.depth());
    const std::vector<std::pair<std::string, std::size_t>> expected{
        {"r", 1}, {"a", 2}, {"b", 3}, {"c", 3}, {"d", 4}, {"e", 5}, {"f", 6}, {"g", 2}, {"h", 3}};
    EXPECT_EQ(visited, expected);
}

TEST(Tree, WithoutADocumentIsEmpty) {
    const NamespaceMap namespaces;
    const Tree tree(nullptr, namespaces);
    EXPECT_EQ(tree.begin(), tree.end());
    EXPECT_EQ(tree.root(), nullptr);
}

TEST(Tree, PathsCountPositionsAmongLikeNamedSiblingsOnly) {
    // Siblings of another name, or of the same local name in another namespace, do not count.
    auto doc = parse_xml(R"(<r xmlns:p="urn:p"><a/><b/><p:a/><a><c/><c><x/></c></a></r>)");
    const NamespaceMap namespaces{{"urn:p", "p"}};
    const Tree tree(doc->doc().get(), namespaces);
    std::vector<std::string> paths;
    for (auto it = tree.begin(); it != tree.end(); ++it) paths.push_back(path_of(it, XPathIndexStyle::IndexAll));
    const std::vector<std::string> expected{"/r[1]",      "/r[1]/a[1]",      "/r[1]/b[1]",         "/r[1]/p:a[1]",
                                            "/r[1]/a[2]", "/r[1]/a[2]/c[1]", "/r[1]/a[2]/c[2]", "/r[1]/a[2]/c[2]/x[1]"};
    EXPECT_EQ(paths, expected);
}

TEST(Tree, PathsAreWrittenWithTheTreesNamespaces) {
    auto doc = parse_xml(R"(<feed xmlns="urn:atom"><entry/><entry><id/></entry></feed>)");
    const NamespaceMap namespaces{{"urn:atom", "ns"}};
    const Tree tree(doc->doc().get(), namespaces);
    auto it = tree.begin();
    while (it != tree.end() && std::string(reinterpret_cast<const char*>((*it)->name)) != "id") ++it;
    ASSERT_NE(it, tree.end());
    EXPECT_EQ(path_of(it, XPathIndexStyle::IndexRepeated), "/ns:feed/ns:entry[2]/ns:id");
    EXPECT_EQ(path_of(it, XPathIndexStyle::NoIndex), "/ns:feed/ns:entry/ns:id");
}

TEST(Tree, SiblingPositionCountsEarlierNamesakes) {
    auto doc = parse_xml("<r><a/><b/><a/>text<a/></r>");
    const xmlNode* third = xmlLastElementChild(const_cast<xmlNode*>(find_element(*doc, "r")));
    EXPECT_EQ(tolven::io::xml::common::tree::sibling_position(third), 3u);
    EXPECT_EQ(tolven::io::xml::common::tree::sibling_position(find_element(*doc, "b")), 1u);
}

}  // namespace
