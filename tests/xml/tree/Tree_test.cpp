#include "xml/tree/Tree.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::tree::Tree;
using tolven::io::xml::common::xpath::NamespaceMap;
using tolven::test::parse_xml;

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

}  // namespace
