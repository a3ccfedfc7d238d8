#include "xml/vcos/load_document.hpp"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::vcos::load_document;
using tolven::io::xml::common::vcos::load_document_from_memory;
using tolven::test::raised_by;
using tolven::test::root_of;

// Files in a fresh temporary folder, removed with the fixture.
class LoadDocument : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(dir_); }
    void TearDown() override { std::filesystem::remove_all(dir_); }
    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(dir_ / name, std::ios::binary) << content;
        return (dir_ / name).string();
    }
    const std::filesystem::path dir_ = std::filesystem::temp_directory_path() /
        ("tolven_xml_" + std::to_string(::getpid()) + "_" +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

std::string text_of(const xmlNode* node) {
    xmlChar* content = xmlNodeGetContent(node);
    std::string text = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return text;
}

TEST_F(LoadDocument, MalformedDocumentReportsSourceLineColumnAndMessage) {
    const auto path = write("bad.xml", "<a>\n  <b></c>\n</a>\n");
    const auto raised = raised_by([&] { load_document(path); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:MalformedDocument");
    EXPECT_EQ(raised.arguments,
              (std::vector<std::string>{path, "2", "10", "Opening and ending tag mismatch: b line 2 and c"}));
}

TEST_F(LoadDocument, ExternalEntitiesAndDtdAreNeverRead) {
    const auto secret = write("secret.txt", "TOP-SECRET");
    auto doc = load_document(
        write("xxe.xml", "<!DOCTYPE a [<!ENTITY x SYSTEM \"file://" + secret + "\">]>\n<a>before&x;after</a>"));
    EXPECT_EQ(text_of(root_of(*doc)), "beforeafter");  // loads, the reference left empty

    const auto dtd = write("evil.dtd", "<!ENTITY leaked \"LEAKED\">");
    doc = load_document(
        write("pe.xml", "<!DOCTYPE a SYSTEM \"" + dtd + "\" [<!ENTITY % p SYSTEM \"" + dtd + "\"> %p;]>\n<a>x</a>"));
    EXPECT_EQ(text_of(root_of(*doc)), "x");
    EXPECT_EQ(xmlGetDocEntity(doc->doc().get(), reinterpret_cast<const xmlChar*>("leaked")), nullptr);
}

TEST_F(LoadDocument, NetworkEntityIsRefusedWithoutPrintingAndLaterReadsAreUntouched) {
    const auto path = write("net.xml", "<!DOCTYPE a [<!ENTITY x SYSTEM \"http://127.0.0.1:9/x\">]>\n<a>[&x;]</a>");
    ::testing::internal::CaptureStderr();
    const auto doc = load_document(path);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(text_of(root_of(*doc)), "[]");

    // The refusal lasts only as long as the load: libxml2's own file reading works afterwards.
    xmlDocPtr direct = xmlReadFile(write("plain.xml", "<plain/>").c_str(), nullptr, XML_PARSE_NONET);
    ASSERT_NE(direct, nullptr);
    xmlFreeDoc(direct);
}

TEST_F(LoadDocument, ReadsStandardInputAsStdin) {
    ASSERT_NE(std::freopen(write("in.xml", "<from-stdin/>").c_str(), "r", stdin), nullptr);
    const auto doc = load_document("-");
    EXPECT_EQ(doc->source(), u"<stdin>");
    EXPECT_STREQ(reinterpret_cast<const char*>(root_of(*doc)->name), "from-stdin");
}

TEST(LoadDocumentFromMemory, SubstitutesInternalEntitiesAndKeepsCdata) {
    const auto doc = load_document_from_memory(
        "<!DOCTYPE a [<!ENTITY who \"world\">]><a><b>hello &who;</b><c><![CDATA[<raw> & text]]></c></a>", "m.xml");
    const auto children = tolven::test::element_children(root_of(*doc));
    EXPECT_EQ(text_of(children[0]), "hello world");
    const xmlNode* c = children[1];
    ASSERT_NE(c->children, nullptr);
    EXPECT_EQ(c->children->type, XML_CDATA_SECTION_NODE);
    EXPECT_EQ(text_of(c), "<raw> & text");
}

TEST(LoadDocumentFromMemory, EntityExpansionBombIsRefused) {
    std::string xml = "<!DOCTYPE a [<!ENTITY e0 \"lollollollollollollollollollol\">";
    for (int i = 1; i <= 10; ++i) {
        std::string refs;
        for (int k = 0; k < 10; ++k) refs += "&e" + std::to_string(i - 1) + ";";
        xml += "<!ENTITY e" + std::to_string(i) + " \"" + refs + "\">";
    }
    xml += "]><a>&e10;</a>";
    EXPECT_EQ(raised_by([&] { load_document_from_memory(xml, "bomb.xml"); }).id, "TOLVEN:io:xml:common:MalformedDocument");
}

}  // namespace
