#include <gtest/gtest.h>

#include <tolven/xml.hpp>

#include <stdexcept>

#include "api/support/collect.hpp"
#include "support/files.hpp"

namespace {

namespace tx = tolven::xml;
using tolven::testing::example;
using tolven::testing::in_mode;
using tolven::testing::read_outcome;
using tolven::testing::slurp;

std::string describe(const tx::Detection& d) {
    std::string s = (d.table_detected ? "table " : "none ") + d.table_selector + " | " + d.row_selector;
    for (const auto& v : d.variables) s += " | " + v.name + ":" + v.type + ":" + v.selector;
    for (const auto& [prefix, uri] : d.namespaces) s += " | " + prefix + "=" + uri;
    return s;
}

TEST(PublicApi, FilesAndBytesInMemoryGiveTheSameDetectionAndRows) {
    for (const char* name : {"catalog.xml", "feed.xml", "atom-feed.xml", "key-value.xml"}) {
        const std::string bytes = slurp(example(name));
        const auto file = tx::Source::file(example(name));
        const auto memory = tx::Source::memory(bytes, name);
        EXPECT_EQ(describe(tx::detect(file)), describe(tx::detect(memory))) << name;
        const auto tree = read_outcome(file, {}, in_mode(tx::ReadSettings::Mode::Tree));
        EXPECT_TRUE(tree.error.empty()) << tree.error;
        EXPECT_EQ(tree, read_outcome(memory, {}, in_mode(tx::ReadSettings::Mode::Stream))) << name;
        EXPECT_TRUE(tree.table.ended);
    }
    tx::ReadSettings two_rows;
    two_rows.head = 2;
    const auto catalog = read_outcome(tx::Source::file(example("catalog.xml")), {}, two_rows);
    ASSERT_EQ(catalog.table.rows.size(), 2u);
    EXPECT_EQ(catalog.table.header[0], "id:string");
    EXPECT_EQ(catalog.table.header[4], "price:double");
    EXPECT_EQ(catalog.table.rows[0][4], "#44.95");
    EXPECT_EQ(catalog.table.rows[0][5], "2000-10-01");
}

TEST(PublicApi, HintsAndSettingsReachDetection) {
    const std::string xml = "<t><r><a>1,5</a><b>x</b></r><r><a>2,25</a><b>y</b></r></t>";
    tx::Hints hints;
    hints.row_node_name = "r";
    hints.decimal_separator = ",";
    const auto out = read_outcome(tx::Source::memory(xml), hints);
    EXPECT_EQ(out.table.header, (std::vector<std::string>{"a:double", "b:string"}));
    EXPECT_EQ(out.table.rows[1][0], "#2.25");

    tx::Hints selectors;
    selectors.variable_selectors = {"//b", "//a"};
    EXPECT_EQ(read_outcome(tx::Source::memory(xml), selectors).table.rows[0], (std::vector<std::string>{"x", "1,5"}));
}

TEST(PublicApi, ErrorsCarryIdentifierAndArguments) {
    tx::Hints two_hints;
    two_hints.row_node_name = "r";
    two_hints.table_node_name = "t";
    struct Case {
        tx::Source source;
        tx::Hints hints;
        std::string expected;
    } cases[] = {
        {tx::Source::memory("<t><r/><r/></t>"), two_hints, "error TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint"},
        {tx::Source::file("/no/such.xml"), {}, "error TOLVEN:io:xml:common:FileNotReadable /no/such.xml No such file or directory"},
        {tx::Source::memory("<t><r>", "broken.xml"), {}, "error TOLVEN:io:xml:common:MalformedDocument broken.xml"},
        {tx::Source::memory("<a/>", "empty.xml"), {}, "error TOLVEN:import:NoTableDetected empty.xml"},
    };
    for (const auto& c : cases) {
        const std::string error = read_outcome(c.source, c.hints).error;
        EXPECT_EQ(error.substr(0, c.expected.size()), c.expected);
    }
    try {
        tx::detect(tx::Source::memory("<t><r>", "broken.xml"));
        FAIL() << "no error";
    } catch (const tx::Error& e) {
        EXPECT_TRUE(e.input_error());
        EXPECT_EQ(e.arguments().size(), 4u);
        EXPECT_EQ(std::string(e.what()), e.message());
        EXPECT_EQ(e.message(), tx::format_message(e.identifier(), e.arguments()));
    }
    EXPECT_FALSE(tx::detect(tx::Source::memory("<a/>")).table_detected);
}

TEST(PublicApi, WhatTheSinkThrowsLeavesReadUnchanged) {
    struct Stop : tx::RowSink {
        void begin(const std::vector<tx::Column>&) override {}
        void row(std::span<const tx::Cell>) override { throw std::out_of_range("enough"); }
    } sink;
    EXPECT_THROW(tx::read(tx::Source::file(example("catalog.xml")), sink), std::out_of_range);
    EXPECT_STREQ(tx::version(), TOLVEN_XML_VERSION_STRING);
}

}  // namespace
