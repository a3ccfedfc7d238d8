// The six hint strategies through `detect`: the table each hint leads to, and every error a hint raises.

#include <gtest/gtest.h>

#include "detection/support/detect_helpers.hpp"
#include "detection/support/hint_documents.hpp"

namespace {

using namespace tolven::testing;
using Strings = std::vector<std::string>;

struct Found {
    const char* what;
    const char* xml;
    HintFields hints;
    bool detected;
    std::string table_selector, row_selector;
    Strings names, selectors;  // names left empty are not checked
    std::size_t at = 0;        // the selector whose values are checked, when values are given
    Strings values{};
};

TEST(HintStrategies, EachHintLeadsToItsTableAndTheSelectorsSelectIt) {
    const std::vector<Found> cases{
        // TableNodeName: the shelves come first and would win without the hint.
        {"table name picks the second table", kLibrary, {.TableNodeName = u"books"}, true, "/library/books",
         "/library/books/book", {"@id", "title", "price"},
         {"/library/books/book/@id", "/library/books/book/title", "/library/books/book/price"}, 2,
         {"9.5", "7.25", "12"}},
        {"table name without a table below: its path, with the position of its first parent", kLibrary,
         {.TableNodeName = u"code"}, false, "/library/shelves/shelf[1]/code", "", {}, {}},
        {"table name above a deeper table stays the table selector", kLibrary, {.TableNodeName = u"library"}, true,
         "/library", "/library/shelves/shelf", {"code", "floor"}, {"/library/shelves/shelf/code", "/library/shelves/shelf/floor"}},
        {"table name in a default namespace, unprefixed", kFeed, {.TableNodeName = u"feed"}, true, "/ns:feed",
         "/ns:feed/ns:entry", {"title", "geo:lat"}, {"/ns:feed/ns:entry/ns:title", "/ns:feed/ns:entry/geo:lat"}, 1,
         {"51.5", "51.4", "51.3"}},
        {"table name in a default namespace, with the registered prefix", kFeed, {.TableNodeName = u"ns:feed"}, true,
         "/ns:feed", "/ns:feed/ns:entry", {"title", "geo:lat"}, {"/ns:feed/ns:entry/ns:title", "/ns:feed/ns:entry/geo:lat"}},
        // TableSelector: the search runs below the first selected element; selectors start from the hint.
        {"table selector picks the second table", kLibrary, {.TableSelector = u"//books"}, true, "//books",
         "(//books)/book", {"@id", "title", "price"},
         {"(//books)/book/@id", "(//books)/book/title", "(//books)/book/price"}, 0, {"b1", "b2", "b3"}},
        {"table selector union: only the first selected element is searched", kLibrary,
         {.TableSelector = u"//books | //shelves"}, true, "//books | //shelves", "(//books | //shelves)/shelf",
         {"code", "floor"}, {"(//books | //shelves)/shelf/code", "(//books | //shelves)/shelf/floor"}, 0,
         {"A", "B", "C"}},
        {"table selector with rows found below it", "<doc><wrap><row><v>1</v></row><row><v>2</v></row></wrap></doc>",
         {.TableSelector = u"/doc"}, true, "/doc", "(/doc)/wrap/row", {"v"}, {"(/doc)/wrap/row/v"}, 0, {"1", "2"}},
        {"table selector with a key/value table found below it",
         "<doc><wrap><k>a</k><v>1</v><k>b</k><v>2</v><k>c</k><v>3</v></wrap></doc>", {.TableSelector = u"/doc"}, true,
         "/doc", "", {"k", "v"}, {"(/doc)/wrap/k", "(/doc)/wrap/v"}, 1, {"1", "2", "3"}},
        {"table selector without a table is echoed", kLibrary, {.TableSelector = u"//book[2]"}, false, "//book[2]", "",
         {}, {}},
        // RowNodeName: the rows are every element on the first named element's path.
        {"row name", kLibrary, {.RowNodeName = u"book"}, true, "/library/books", "/library/books/book",
         {"@id", "title", "price"}, {"/library/books/book/@id", "/library/books/book/title", "/library/books/book/price"},
         1, {"Dune", "Emma", "Ulysses"}},
        {"row name: items of both groups, not the one under other",
         "<r><g><item><v>1</v></item></g><g><item><v>2</v></item><item><v>3</v></item></g>"
         "<other><item><v>9</v></item></other></r>",
         {.RowNodeName = u"item"}, true, "/r/g", "/r/g/item", {"v"}, {"/r/g/item/v"}, 0, {"1", "2", "3"}},
        {"row name of the root", "<r><a>1</a><b>x</b></r>", {.RowNodeName = u"r"}, true, "/r", "/r", {"a", "b"},
         {"/r/a", "/r/b"}},
        {"row name whose rows make no table", "<r><e><a>1</a></e><e><b>2</b></e><e><c>3</c></e></r>",
         {.RowNodeName = u"e"}, false, "/r", "/r/e", {}, {}},
        // RowSelector: one row entry, named after the first row, takes the variables of every row.
        {"row selector", kLibrary, {.RowSelector = u"//book[price > 8]"}, true, "", "//book[price > 8]",
         {"@id", "title", "price"},
         {"(//book[price > 8])/@id", "(//book[price > 8])/title", "(//book[price > 8])/price"}, 1,
         {"Dune", "Ulysses"}},
        {"row selector over different parents and names",
         "<r><g><item><v>1</v></item></g><h><thing><v>2</v><w>x</w></thing><thing><v>3</v></thing></h></r>",
         {.RowSelector = u"//item | //thing"}, true, "", "//item | //thing", {"v", "w"},
         {"(//item | //thing)/v", "(//item | //thing)/w"}, 0, {"1", "2", "3"}},
        {"row selector whose rows make no table", "<r><e><a>1</a></e><e><b>2</b></e><e><c>3</c></e></r>",
         {.RowSelector = u"//e"}, false, "", "//e", {}, {}},
        // VariableSelectors: each selector is a variable, named after its first node as the document writes it.
        {"variable selectors", kLibrary, {.VariableSelectors = {u"//book/title", u"//book/@id | //price", u"//floor | //shelf"}},
         true, "", "", {"title", "@id", "shelf"}, {"//book/title", "//book/@id | //price", "//floor | //shelf"}},
        {"variable selectors in a default namespace", kFeed, {.VariableSelectors = {u"//ns:entry/ns:title", u"//geo:lat"}},
         true, "", "", {"title", "geo:lat"}, {"//ns:entry/ns:title", "//geo:lat"}},
        // VariableNodeNames: each name's first node in document order, by its path without positions.
        {"variable names", kLibrary, {.VariableNodeNames = {u"title", u"id", u"code", u"title"}}, true, "", "",
         {"title", "@id", "code", "title"},
         {"/library/books/book/title", "/library/books/book/@id", "/library/shelves/shelf/code", "/library/books/book/title"},
         1, {"b1", "b2", "b3"}},
        {"variable names compared as written, prefix included", R"(<r xmlns:p="urn:p"><p:v>1</p:v><v>x</v></r>)",
         {.VariableNodeNames = {u"v", u"p:v"}}, true, "", "", {"v", "p:v"}, {"/r/v", "/r/p:v"}, 1, {"1"}},
        {"variable names write registered prefixes", kFeed, {.VariableNodeNames = {u"geo:lat"}}, true, "", "",
         {"geo:lat"}, {"/ns:feed/ns:entry/geo:lat"}, 0, {"51.5", "51.4", "51.3"}},
        {"variable names: an element before its attributes, attributes before children",
         R"(<r><a code="x" a="y"><code>1</code></a></r>)", {.VariableNodeNames = {u"code", u"a"}}, true, "", "",
         {"@code", "a"}, {"/r/a/@code", "/r/a"}},
        {"variable names without attributes go on to an element", R"(<r><a code="x"/><b><code>1</code></b></r>)",
         {.VariableNodeNames = {u"code"}, .ImportAttributes = false}, true, "", "", {"code"}, {"/r/b/code"}},
        {"variable names: an element named xmlns is no declaration", R"(<r xmlns:x="urn:x"><y><xmlns>1</xmlns></y></r>)",
         {.VariableNodeNames = {u"xmlns"}}, true, "", "", {"xmlns"}, {"/r/y/xmlns"}},
    };
    for (const Found& c : cases) {
        SCOPED_TRACE(c.what);
        const auto doc = parse_xml(c.xml);
        const DetectResult r = run_detect(doc, c.hints);
        EXPECT_EQ(r.detected, c.detected);
        EXPECT_EQ(r.table_selector, c.table_selector);
        EXPECT_EQ(r.row_selector, c.row_selector);
        EXPECT_EQ(r.selectors, c.selectors);
        if (!c.names.empty()) {
            EXPECT_EQ(r.names, c.names);
        }
        if (!c.values.empty()) {
            EXPECT_EQ(select_values(*doc, r.selectors.at(c.at), r.namespaces), c.values);
        }
    }
}

TEST(HintStrategies, TypesAreVotedFromTheFirstNonBlankValues) {
    // CDATA counts as text; blank and missing text add nothing to the vote.
    EXPECT_EQ(run_detect("<r><v> </v><v><![CDATA[12]]></v><v/><w>\n\t</w><w/></r>", {.VariableSelectors = {u"//v", u"//w"}}).types,
              (Strings{"double", "string"}));
    EXPECT_EQ(run_detect(kLibrary, {.RowNodeName = u"book"}).types, (Strings{"string", "string", "double"}));
    // 250 numbers, then more texts than numbers: only the numbers are looked at.
    std::string xml = "<r>";
    for (int i = 0; i < 250; ++i) xml += "<v>" + std::to_string(i) + "</v>";
    for (int i = 0; i < 260; ++i) xml += "<v>text</v>";
    EXPECT_EQ(run_detect(xml + "<v/></r>", {.VariableSelectors = {u"//v"}}).types, (Strings{"double"}));
}

struct Raised {
    const char* xml;
    HintFields hints;
    std::string id;
    Strings arguments;
};

void expect_raised(const std::vector<Raised>& cases) {
    for (const Raised& c : cases) {
        const auto error = detect_error(c.xml, c.hints);
        ASSERT_TRUE(error) << c.id;
        EXPECT_EQ(error->id, c.id);
        EXPECT_EQ(error->arguments, c.arguments) << c.id;
    }
}

constexpr const char* kDet = "TOLVEN:io:xml:detection:";

TEST(HintStrategies, TableSelectorErrors) {
    const std::string t = std::string(kDet) + "TableSelector";
    // Attributes and text first fail even though elements follow in the union.
    expect_raised({
        {kLibrary, {.TableSelector = u"//magazine"}, t + "InvalidSelection", {}},
        {kLibrary, {.TableSelector = u"//book/@id"}, t + "InvalidSelection", {}},
        {kLibrary, {.TableSelector = u"//title/text()"}, t + "InvalidSelection", {}},
        {kLibrary, {.TableSelector = u"//book[1]/@id | //book[2]"}, t + "InvalidSelection", {}},
        {kLibrary, {.TableSelector = u"count(//a)"}, t + "NotNodeSet", {"number", "count(//a)"}},
        {kLibrary, {.TableSelector = u"string(//code)"}, t + "NotNodeSet", {"string", "string(//code)"}},
        {kLibrary, {.TableSelector = u"//x:books"}, t + "UnregisteredNamespace", {"x"}},
        {kLibrary, {.TableSelector = u"//["}, t + "UnknownError", {"//[: Invalid expression"}},
    });
}

TEST(HintStrategies, RowSelectorErrors) {
    const std::string r = std::string(kDet) + "RowSelector";
    expect_raised({
        {kLibrary, {.RowSelector = u"//magazine"}, r + "InvalidSelection", {}},
        {kLibrary, {.RowSelector = u"//book/@id"}, r + "AttributeSelected", {"//book/@id"}},
        // One attribute among elements is enough.
        {kLibrary, {.RowSelector = u"//book | //book[2]/@id"}, r + "AttributeSelected", {"//book | //book[2]/@id"}},
        {kLibrary, {.RowSelector = u"//title/text()"}, r + "InvalidSelection", {}},
        {kLibrary, {.RowSelector = u"1 = 1"}, r + "NotNodeSet", {"boolean", "1 = 1"}},
        {kLibrary, {.RowSelector = u"//x:book"}, r + "UnregisteredNamespace", {"x"}},
        {kLibrary, {.RowSelector = u"//["}, r + "UnknownError", {"//[: Invalid expression"}},
    });
}

TEST(HintStrategies, VariableSelectorsErrors) {
    const std::string v = std::string(kDet) + "VariableSelectors";
    // The first failing selector ends the call, whatever follows it.
    const auto after_title = [](std::u16string s) {
        return HintFields{.VariableSelectors = {u"//title", std::move(s), u"//magazine"}};
    };
    expect_raised({
        {kLibrary, after_title(u"//magazine"), v + "InvalidSelection", {}},
        {kLibrary, after_title(u"//title/text()"), v + "NotElementOrAttribute", {"//title/text()"}},
        // A late text node fails as well as a first one.
        {kLibrary, after_title(u"//title | //book[3]/title/text()"), v + "NotElementOrAttribute",
         {"//title | //book[3]/title/text()"}},
        {"<r><!--note--><v>1</v></r>", {.VariableSelectors = {u"//comment()"}}, v + "NotElementOrAttribute", {"//comment()"}},
        {kLibrary, after_title(u"count(//a)"), v + "NotNodeSet", {"number", "count(//a)"}},
        {kLibrary, after_title(u"//x:title"), v + "UnregisteredNamespace", {"x"}},
        {kLibrary, after_title(u"//["), v + "UnknownError", {"//[: Invalid expression"}},
        {kLibrary, after_title(u""), v + "UnknownError", {": Invalid expression"}},
    });
}

TEST(HintStrategies, NodeNameErrors) {
    const std::string missing = "TOLVEN:io:xml:common:NodeNameNotFound";
    const std::string names = std::string(kDet) + "VariableNodeNames";
    expect_raised({
        {kLibrary, {.TableNodeName = u"magazine"}, missing, {"TableNodeName", "magazine", "test.xml"}},
        {kLibrary, {.RowNodeName = u"magazine"}, missing, {"RowNodeName", "magazine", "test.xml"}},
        // The first failing name ends the search: "id", only an attribute, is not reached.
        {kLibrary, {.VariableNodeNames = {u"title", u"isbn", u"id"}, .ImportAttributes = false},
         names + "NonexistentNode", {"isbn", "test.xml"}},
        // The registered prefix of a default namespace is not how the document writes it.
        {kFeed, {.VariableNodeNames = {u"ns:title"}}, names + "NonexistentNode", {"ns:title", "test.xml"}},
        {kLibrary, {.VariableNodeNames = {u"id"}, .ImportAttributes = false}, names + "ImportAttributesFalse", {"id"}},
        {kFeed, {.VariableNodeNames = {u"xmlns"}}, names + "MatchesNamespaceDeclaration", {"xmlns"}},
        {kFeed, {.VariableNodeNames = {u"xmlns:geo"}}, names + "MatchesNamespaceDeclaration", {"xmlns:geo"}},
    });
}

TEST(HintStrategies, PathsThatCannotBeWrittenAreReported) {
    // Without namespace detection the feed's default namespace has no prefix to write it with.
    const std::string hinted = std::string(kDet) + "DetectedUnsupportedSelectorDetectionHint";
    expect_raised({
        {kFeed, {.TableNodeName = u"title", .DetectNamespaces = false}, hinted,
         {"TableSelector", "/feed/title", "TableNodeName", "title"}},
        {kFeed, {.RowNodeName = u"entry", .DetectNamespaces = false}, hinted,
         {"RowSelector", "/feed/entry", "RowNodeName", "entry"}},
        {kFeed, {.VariableNodeNames = {u"title"}, .DetectNamespaces = false}, hinted,
         {"VariableSelectors", "/feed/title", "VariableNodeNames", "title"}},
        {R"(<r xmlns="urn:x"><v>1</v><v>2</v></r>)", {.DetectNamespaces = false},
         std::string(kDet) + "DetectedUnsupportedSelector", {"TableSelector", "/r"}},
    });
}

}  // namespace
