#include "xml/xpath/UniqueNodeNameMap.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::xpath::UniqueNodeNameMap;
using tolven::test::element_children;
using tolven::test::parse_xml;
using tolven::test::root_of;

TEST(UniqueNodeNameMap, NamesAreNamespaceUriAndLocalName) {
    // x:row and y:row are one name (one URI); row without namespace and z:row are two more.
    const auto doc = parse_xml(
        "<t xmlns:x='urn:r' xmlns:y='urn:r' xmlns:z='urn:z'><x:row/><row/><y:row/><z:row/><row/></t>");
    const auto children = element_children(root_of(*doc));
    UniqueNodeNameMap<std::vector<const xmlNode*>> groups;
    for (const xmlNode* child : children) groups[groups.find_or_insert(child).first].push_back(child);

    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0], (std::vector<const xmlNode*>{children[0], children[2]}));
    EXPECT_EQ(groups[1], (std::vector<const xmlNode*>{children[1], children[4]}));
    EXPECT_EQ(groups[2], (std::vector<const xmlNode*>{children[3]}));
    EXPECT_EQ(groups.find(children[2]), 0u);
    EXPECT_EQ(groups.find(root_of(*doc)), std::nullopt);
}

TEST(UniqueNodeNameMap, FindOrInsertReportsNewNamesOnceAndKeepsInsertionOrder) {
    const auto doc = parse_xml("<t a='1' xmlns:p='urn:p' p:a='2'><b/><a/><b/></t>");
    UniqueNodeNameMap<std::size_t> counts;
    const auto children = element_children(root_of(*doc));
    EXPECT_EQ(counts.find_or_insert(children[0]), std::make_pair(std::size_t{0}, true));
    EXPECT_EQ(counts.find_or_insert(children[1]), std::make_pair(std::size_t{1}, true));
    EXPECT_EQ(counts.find_or_insert(children[2]), std::make_pair(std::size_t{0}, false));
    // The attribute a and the element a share a name; p:a is another one.
    const xmlAttr* plain = root_of(*doc)->properties;
    EXPECT_EQ(counts.find_or_insert(plain), std::make_pair(std::size_t{1}, false));
    EXPECT_EQ(counts.find_or_insert(plain->next), std::make_pair(std::size_t{2}, true));
    EXPECT_EQ(counts.size(), 3u);
    EXPECT_EQ(counts.values(), (std::vector<std::size_t>{0, 0, 0}));
}

}  // namespace
