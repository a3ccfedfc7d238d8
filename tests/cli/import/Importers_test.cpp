// The tree and the streaming importer on selectors detection can write: both must agree, and
// agree with what the selectors mean.
#include <gtest/gtest.h>

#include "cli/support/import_both.hpp"

namespace {

using tolven::cli::DetectionResult;
using tolven::testing::import_both;

DetectionResult table(const std::string& row, const std::vector<std::pair<std::string, std::string>>& variables,
                      std::vector<std::pair<std::string, std::string>> namespaces = {}) {
    DetectionResult r;
    r.table_detected = true;
    r.row_selector = row;
    for (const auto& [name, selector] : variables) r.variables.push_back({name, "string", selector});
    r.namespaces = std::move(namespaces);
    return r;
}

#define EXPECT_BOTH_EQ(csv, expected)        \
    do {                                     \
        const auto both_ = (csv);            \
        EXPECT_EQ(both_.tree, expected);     \
        EXPECT_EQ(both_.stream, expected);   \
    } while (false)

TEST(Importers, FirstNodeInDocumentOrderWithinTheRowIsTheValue) {
    const std::string xml = R"(<t>
  <r id="1"><a>x</a><a>y</a><g/><g><b>deep</b></g></r>
  <r><g><b>one</b></g><g><b>two</b></g>own <!-- c -->text</r>
  <r id="3"/>
</t>)";
    EXPECT_BOTH_EQ(import_both(xml, table("/t/r", {{"id", "/t/r/@id"}, {"a", "/t/r/a"}, {"b", "/t/r/g/b"},
                                                   {"own", "/t/r"}})),
                   "id,a,b,own\n1,x,deep,\n,,one,own text\n3,,,\n");
}

TEST(Importers, VariableOutsideTheRowsIsAlignedByIndex) {
    const std::string xml = R"(<t>
  <r><a>1</a></r><r><a>2</a></r><r><a>3</a></r>
  <notes><n>first</n><n>second</n></notes>
</t>)";
    // The notes come after every row: the rows wait for them, then the last row gets none.
    EXPECT_BOTH_EQ(import_both(xml, table("/t/r", {{"a", "/t/r/a"}, {"n", "/t/notes/n"}})),
                   "a,n\n1,first\n2,second\n3,\n");
    // More values than rows: the extra ones make no rows.
    EXPECT_BOTH_EQ(import_both(xml, table("/t/r[2]", {{"a", "/t/r[2]/a"}, {"n", "/t/notes/n"}})), "a,n\n2,first\n");
}

TEST(Importers, WithoutRowsTheIthNodesMakeTheIthRow) {
    const std::string xml = "<s><e><d>1</d><m>a</m><d>2</d><d>3</d><m>c</m></e></s>";
    EXPECT_BOTH_EQ(import_both(xml, table("", {{"d", "/s/e/d"}, {"m", "/s/e/m"}})), "d,m\n1,a\n2,c\n3,\n");
    EXPECT_BOTH_EQ(import_both(xml, table("", {{"d", "/s/e/d"}, {"m", "/s/e/m"}}), 2), "d,m\n1,a\n2,c\n");
}

TEST(Importers, NamespacesPositionsAndMixedContent) {
    const std::string xml = R"(<f xmlns="urn:atom" xmlns:g="urn:geo" xmlns:o="urn:other">
  <e><id>1</id><g:lat>5</g:lat><o:lat>no</o:lat><p>a<i>skip</i>b<![CDATA[<c>]]></p></e>
  <e><id>2</id><g:lat>6</g:lat><p>&#38;</p></e>
  <x><id>not a row</id></x>
</f>)";
    const std::vector<std::pair<std::string, std::string>> ns = {{"ns", "urn:atom"}, {"geo", "urn:geo"}};
    EXPECT_BOTH_EQ(import_both(xml, table("/ns:f/ns:e", {{"id", "/ns:f/ns:e/ns:id"}, {"geo:lat", "/ns:f/ns:e/geo:lat"},
                                                        {"p", "/ns:f/ns:e/ns:p"}},
                                          ns)),
                   "id,geo:lat,p\n1,5,ab<c>\n2,6,&\n");
    EXPECT_BOTH_EQ(import_both(xml, table("/ns:f/ns:e[2]", {{"id", "(/ns:f/ns:e[2])/ns:id"}}, ns)), "id\n2\n");
    EXPECT_BOTH_EQ(import_both(xml, table("/*/*[local-name()='e']", {{"id", "/*/*[local-name()='e']/*[1]"}}, ns)),
                   "id\n1\n2\n");
}

TEST(Importers, HeadStopsBothImporters) {
    std::string xml = "<t>";
    for (int i = 0; i < 1000; ++i) xml += "<r><a>" + std::to_string(i) + "</a></r>";
    xml += "</t>";
    EXPECT_BOTH_EQ(import_both(xml, table("/t/r", {{"a", "/t/r/a"}}), 3), "a\n0\n1\n2\n");
    EXPECT_BOTH_EQ(import_both(xml, table("/t/r", {{"a", "/t/r/a"}}), 0), "a\n");
}

}  // namespace
