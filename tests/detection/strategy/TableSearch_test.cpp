// The hint-free search through the public entry: where the table is found, and how it is reported.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "detection/support/SearchProbe.hpp"
#include "detection/support/detect_helpers.hpp"

namespace {

using tolven::testing::DetectResult;
using tolven::testing::HintFields;
using tolven::testing::make_options;
using tolven::testing::parse_xml;
using tolven::testing::run_detect;
using tolven::testing::SearchProbe;
using tolven::testing::select_values;
using Strings = std::vector<std::string>;

std::string read_example(const std::string& name) {
    std::ifstream in(std::string(TOLVEN_SOURCE_DIR) + "/examples/" + name);
    std::stringstream content;
    content << in.rdbuf();
    return content.str();
}

TEST(TableSearch, RowGroupedCatalogReportsAttributesAndLeavesOfTheRows) {
    const auto doc = parse_xml(read_example("catalog.xml"));
    const DetectResult r = run_detect(doc);
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/catalog");
    EXPECT_EQ(r.row_selector, "/catalog/book");
    EXPECT_EQ(r.names, (Strings{"@id", "author", "title", "genre", "price", "publish_date", "description"}));
    EXPECT_EQ(r.selectors, (Strings{"/catalog/book/@id", "/catalog/book/author", "/catalog/book/title",
                                    "/catalog/book/genre", "/catalog/book/price", "/catalog/book/publish_date",
                                    "/catalog/book/description"}));
    EXPECT_EQ(r.types[4], "double");
    EXPECT_EQ(r.types[5], "datetime");
    EXPECT_EQ(select_values(*doc, "/catalog/book/price", {}), (Strings{"44.95", "5.95", "5.95", "4.95"}));
}

TEST(TableSearch, TableBelowASingleChildIsFoundOneLevelDown) {
    const DetectResult r = run_detect(read_example("feed.xml"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/rss/channel");
    EXPECT_EQ(r.row_selector, "/rss/channel/item");
    EXPECT_EQ(r.names, (Strings{"title", "link", "pubDate", "temperature", "wind"}));
}

TEST(TableSearch, SelectorsUseRegisteredPrefixesWhileNamesKeepTheDocumentsOwn) {
    const auto doc = parse_xml(read_example("atom-feed.xml"));
    const DetectResult r = run_detect(doc);
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/ns:feed");
    EXPECT_EQ(r.row_selector, "/ns:feed/ns:entry");
    EXPECT_EQ(r.names, (Strings{"id", "title", "updated", "geo:lat", "geo:long"}));
    ASSERT_EQ(r.selectors.size(), 5u);
    EXPECT_EQ(r.selectors[0], "/ns:feed/ns:entry/ns:id");
    EXPECT_EQ(r.selectors[3], "/ns:feed/ns:entry/geo:lat");
    EXPECT_EQ(r.types[3], "double");
    EXPECT_EQ(select_values(*doc, r.selectors[3], r.namespaces), (Strings{"51.5072", "51.4995", "51.4821"}));
}

TEST(TableSearch, NonRowGroupedNamesBecomeColumnsOfTheirParentWithoutRowSelector) {
    const DetectResult r = run_detect(read_example("key-value.xml"));
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/statement/entries");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_EQ(r.names, (Strings{"date", "amount", "memo"}));
    EXPECT_EQ(r.selectors, (Strings{"/statement/entries/date", "/statement/entries/amount", "/statement/entries/memo"}));
    EXPECT_EQ(r.types, (Strings{"datetime", "double", "string"}));
}

TEST(TableSearch, DocumentWithoutRepeatedNamesHasNoTable) {
    const DetectResult r = run_detect("<root><a>1</a><b><c>2</c></b></root>");
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_TRUE(r.names.empty());
    EXPECT_TRUE(r.selectors.empty());
}

TEST(TableSearch, ChildlessRowsAreTheirOwnVariable) {
    const DetectResult r = run_detect("<r><v>1</v><v>2</v></r>");
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.names, Strings{"v"});
    EXPECT_EQ(r.selectors, Strings{"/r/v"});
    EXPECT_EQ(r.types, Strings{"double"});
}

TEST(TableSearch, DeeperTableCarriesTheSiblingPositionsOfThePathDown) {
    // "section" repeats at the top, but too sparsely; the search goes on child by child.
    const DetectResult r = run_detect(R"(<root>
        <intro/>
        <section/>
        <section><p>1</p><p>2</p><p>3</p></section>
      </root>)");
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/root/section[2]");
    EXPECT_EQ(r.row_selector, "/root/section[2]/p");
    EXPECT_EQ(r.selectors, Strings{"/root/section[2]/p"});
}

TEST(TableSearch, PositionsCountLikeNamedSiblingsOnly) {
    const DetectResult r = run_detect(R"(<root>
        <a/><b/>
        <box><v>1</v><v>2</v></box>
      </root>)");
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/root/box");
}

TEST(TableSearch, OwnLevelWinsOverABetterTableDeeperDown) {
    const DetectResult r = run_detect(R"(<root>
        <row><x>1</x><list><i>1</i><i>2</i><i>3</i><i>4</i></list></row>
        <row><x>2</x></row>
      </root>)");
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.row_selector, "/root/row");
}

TEST(TableSearch, FirstSubtreeInDocumentOrderWins) {
    const DetectResult r = run_detect(R"(<root>
        <a><v>1</v><v>2</v></a>
        <b><w>1</w><w>2</w><w>3</w></b>
      </root>)");
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.table_selector, "/root/a");
}

TEST(TableSearch, NestedElementsFollowTheLeavesOfTheirParent) {
    const DetectResult r = run_detect(R"(<t>
        <row a="1"><x>1</x><g>note<y>2</y></g><z>3</z></row>
        <row a="2"><x>2</x><g>note<y>4</y></g><z>5</z></row>
      </t>)");
    ASSERT_TRUE(r.detected);
    // g carries text of its own, so it is a variable beside its child y.
    EXPECT_EQ(r.names, (Strings{"@a", "x", "z", "g", "y"}));
    EXPECT_EQ(r.selectors[3], "/t/row/g");
    EXPECT_EQ(r.selectors[4], "/t/row/g/y");
}

TEST(TableSearch, AttributesAreLeftOutWhenNotImported) {
    HintFields hints;
    hints.ImportAttributes = false;
    const DetectResult r = run_detect(read_example("catalog.xml"), hints);
    ASSERT_TRUE(r.detected);
    EXPECT_EQ(r.names, (Strings{"author", "title", "genre", "price", "publish_date", "description"}));
}

TEST(TableSearch, UnwritableTableSelectorIsRaised) {
    HintFields hints;
    hints.DetectNamespaces = false;
    const auto error = tolven::testing::detect_error(R"(<r xmlns="urn:x"><v>1</v><v>2</v></r>)", hints);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->id, "TOLVEN:io:xml:detection:DetectedUnsupportedSelector");
    EXPECT_EQ(error->arguments, (Strings{"TableSelector", "/r"}));
}

// hasRepeatingChildrenNodes: which levels are clustered at all.
class RepeatingChildren : public ::testing::Test {
protected:
    std::optional<tolven::io::xml::common::xpath::UniqueNodeNameMap<std::vector<const xmlNode*>>> groups_of(
        std::string_view xml) {
        doc_ = parse_xml(xml);
        probe_ = std::make_unique<SearchProbe>(doc_.get(), make_options());
        return probe_->hasRepeatingChildrenNodes(xmlDocGetRootElement(doc_->doc().get()));
    }
    std::vector<std::size_t> sizes_of(const std::string_view xml) {
        std::vector<std::size_t> sizes;
        if (auto groups = groups_of(xml))
            for (const auto& g : *groups) sizes.push_back(g.size());
        return sizes;
    }
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc_;
    std::unique_ptr<SearchProbe> probe_;
};

TEST_F(RepeatingChildren, OneRepeatedPairIsEnoughAndEveryNameIsKept) {
    EXPECT_EQ(sizes_of("<r><a/><b/><a/></r>"), (std::vector<std::size_t>{2, 1}));
    EXPECT_EQ(sizes_of("<r><a/><b/><c/></r>"), std::vector<std::size_t>{});
    EXPECT_EQ(sizes_of("<r>text</r>"), std::vector<std::size_t>{});
}

TEST_F(RepeatingChildren, TextAndCommentsBetweenElementsAreIgnored) {
    EXPECT_EQ(sizes_of("<r>\n  <a/>x<!-- c --><?pi?>\n  <a/>\n</r>"), std::vector<std::size_t>{2});
}

TEST_F(RepeatingChildren, NamesAreComparedByUriNotPrefix) {
    EXPECT_EQ(sizes_of(R"(<r xmlns:x="urn:a" xmlns:y="urn:a"><x:row/><y:row/><row/></r>)"),
              (std::vector<std::size_t>{2, 1}));
}

}  // namespace
