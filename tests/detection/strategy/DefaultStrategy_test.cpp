// Ordinary documents through `detect` without hints: the table found, and what a user gets when
// evaluating each reported selector with libxml2 under the reported namespaces.

#include "detection/strategy/DefaultStrategy.hpp"

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"

namespace {

using namespace tolven::testing;
using Strings = std::vector<std::string>;

struct Expected {
    std::string table_selector;
    std::string row_selector;
    Strings names;
    std::vector<Strings> values;  // per variable, what its selector selects
};

struct Document {
    const char* what;
    const char* xml;
    Expected expected;
    HintFields hints = {};
};

const std::vector<Document>& documents() {
    static const std::vector<Document> all{
        {"catalog with an id attribute",
         R"(<catalog>
              <book id="bk101"><author>Gambardella</author><title>XML Guide</title><price>44.95</price></book>
              <book id="bk102"><author>Ralls</author><title>Midnight Rain</title><price>5.95</price></book>
              <book id="bk103"><author>Corets</author><title>Maeve</title><price>5.95</price></book>
            </catalog>)",
         {"/catalog", "/catalog/book", {"@id", "author", "title", "price"},
          {{"bk101", "bk102", "bk103"}, {"Gambardella", "Ralls", "Corets"}, {"XML Guide", "Midnight Rain", "Maeve"},
           {"44.95", "5.95", "5.95"}}}},
        {"news feed: channel metadata, then the items",
         R"(<rss version="2.0"><channel>
              <title>City news</title><link>http://example.org/</link><description>Local stories</description>
              <item><title>Bridge reopens</title><pubDate>2024-03-01</pubDate></item>
              <item><title>Market moves</title><pubDate>2024-03-02</pubDate></item>
              <item><title>Rain ahead</title><pubDate>2024-03-03</pubDate></item>
              <item><title>Park opens</title></item>
            </channel></rss>)",
         {"/rss/channel", "/rss/channel/item", {"title", "pubDate"},
          {{"Bridge reopens", "Market moves", "Rain ahead", "Park opens"}, {"2024-03-01", "2024-03-02", "2024-03-03"}}}},
        {"feed in a default namespace", kFeed,
         {"/ns:feed", "/ns:feed/ns:entry", {"title", "geo:lat"}, {{"North", "South", "East"}, {"51.5", "51.4", "51.3"}}}},
        {"alternating keys and values: a table without row elements",
         "<settings><key>colour</key><value>blue</value><key>size</key><value>12</value>"
         "<key>shape</key><value>round</value></settings>",
         {"/settings", "", {"key", "value"}, {{"colour", "size", "shape"}, {"blue", "12", "round"}}}},
        {"first repeated level fails scoring, so the search descends",
         R"(<report>
              <section><a>1</a></section><section><b>2</b></section><section><c>3</c></section>
              <data><rec><x>1</x><y>p</y></rec><rec><x>2</x><y>q</y></rec></data>
            </report>)",
         {"/report/data", "/report/data/rec", {"x", "y"}, {{"1", "2"}, {"p", "q"}}}},
        {"positions count like-named element siblings only",
         R"(<root><box/><note/><box><v>1</v><v>2</v></box></root>)",
         {"/root/box[2]", "/root/box[2]/v", {"v"}, {{"1", "2"}}}},
        {"nested parents carrying text of their own follow the leaves of their row",
         R"(<t><row a="1"><x>1</x><g>note<y>2</y></g><z>3</z></row><row a="2"><x>3</x><g>memo<y>4</y></g><z>5</z></row></t>)",
         {"/t", "/t/row", {"@a", "x", "z", "g", "y"}, {{"1", "2"}, {"1", "3"}, {"3", "5"}, {"note2", "memo4"}, {"2", "4"}}}},
        {"childless rows are their own variable; comments and text between them are ignored",
         "<r><v>1</v>x<!-- c --><?pi?><v>2</v></r>", {"/r", "/r/v", {"v"}, {{"1", "2"}}}},
        {"a table at the own level wins over a better one deeper down",
         "<root><row><x>1</x><list><i>1</i><i>2</i><i>3</i><i>4</i></list></row><row><x>2</x></row></root>",
         {"/root", "/root/row", {"x", "i"}, {{"1", "2"}, {"1", "2", "3", "4"}}}},
        {"the first subtree in document order wins",
         "<root><a><v>1</v><v>2</v></a><b><w>1</w><w>2</w><w>3</w></b></root>",
         {"/root/a", "/root/a/v", {"v"}, {{"1", "2"}}}},
        {"attributes are left out when not imported",
         R"(<c><b id="1"><t>x</t></b><b id="2"><t>y</t></b></c>)",
         {"/c", "/c/b", {"t"}, {{"x", "y"}}},
         {.ImportAttributes = false}},
    };
    return all;
}

TEST(DefaultStrategy, FindsTheTableOfOrdinaryDocumentsAndEverySelectorSelectsItsVariable) {
    for (const Document& d : documents()) {
        SCOPED_TRACE(d.what);
        const auto doc = parse_xml(d.xml);
        const DetectResult r = run_detect(doc, d.hints);
        ASSERT_TRUE(r.detected);
        EXPECT_EQ(r.table_selector, d.expected.table_selector);
        EXPECT_EQ(r.row_selector, d.expected.row_selector);
        EXPECT_EQ(r.names, d.expected.names);
        ASSERT_EQ(r.selectors.size(), d.expected.values.size());
        ASSERT_EQ(r.types.size(), r.selectors.size());
        for (std::size_t i = 0; i < r.selectors.size(); ++i)
            EXPECT_EQ(select_values(*doc, r.selectors[i], r.namespaces), d.expected.values[i]) << r.selectors[i];
        // One node per row: every document's first variable is in every row.
        if (!r.row_selector.empty()) {
            EXPECT_EQ(select_values(*doc, r.row_selector, r.namespaces).size(), d.expected.values.front().size());
        }
    }
}

TEST(DefaultStrategy, PrefixesBoundToOneUriNameOneRowWhileTheUnqualifiedNameIsAnother) {
    const auto doc = parse_xml(R"(<r xmlns:x="urn:a" xmlns:y="urn:a">
        <x:row><x:v>1</x:v></x:row><y:row><y:v>2</y:v></y:row><x:row><x:v>3</x:v></x:row>
        <row><v>4</v></row>
      </r>)");
    const DetectResult r = run_detect(doc);
    ASSERT_TRUE(r.detected);
    // Names are written as in the first row; the selectors reach the rows of either prefix.
    EXPECT_EQ(r.names, Strings{"x:v"});
    ASSERT_EQ(r.selectors.size(), 1u);
    EXPECT_EQ(select_values(*doc, r.selectors[0], r.namespaces), (Strings{"1", "2", "3"}));
    EXPECT_EQ(select_values(*doc, r.row_selector, r.namespaces).size(), 3u);
}

TEST(DefaultStrategy, DocumentWithoutRepeatedNamesHasNoTable) {
    const DetectResult r = run_detect("<root><a>1</a><b><c>2</c></b></root>");
    EXPECT_FALSE(r.detected);
    EXPECT_EQ(r.table_selector, "");
    EXPECT_EQ(r.row_selector, "");
    EXPECT_TRUE(r.names.empty());
    EXPECT_TRUE(r.selectors.empty());
}

}  // namespace
