#include "xml/vcos/load_document.hpp"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::vcos::load_document;
using tolven::io::xml::common::vcos::load_document_from_memory;
using tolven::test::raised_by;
using tolven::test::root_of;

// A file in a fresh temporary folder, removed with the fixture.
class TempFiles : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = std::filesystem::temp_directory_path() /
               ("tolven_xml_" + std::to_string(::getpid()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    std::string write(const std::string& name, const std::string& content) {
        const auto path = dir_ / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }

    std::filesystem::path dir_;
};

std::string text_of(const xmlNode* node) {
    xmlChar* content = xmlNodeGetContent(node);
    std::string text = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return text;
}

using LoadDocument = TempFiles;

TEST_F(LoadDocument, LoadsAFileAndNamesItByItsPath) {
    const auto path = write("a.xml", "<catalog><book>one</book></catalog>");
    const auto doc = load_document(path);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->source(), std::u16string(path.begin(), path.end()));
    EXPECT_STREQ(reinterpret_cast<const char*>(root_of(*doc)->name), "catalog");
}

TEST_F(LoadDocument, MalformedDocumentReportsSourceLineColumnAndMessage) {
    const auto path = write("bad.xml", "<a>\n  <b></c>\n</a>\n");
    const auto raised = raised_by([&] { load_document(path); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:MalformedDocument");
    ASSERT_EQ(raised.arguments.size(), 4u);
    EXPECT_EQ(raised.arguments[0], path);
    EXPECT_EQ(raised.arguments[1], "2");
    EXPECT_EQ(raised.arguments[2], "10");
    EXPECT_EQ(raised.arguments[3], "Opening and ending tag mismatch: b line 2 and c");
}

TEST_F(LoadDocument, MissingFileAndFolderAreNotReadable) {
    const auto missing = (dir_ / "none.xml").string();
    auto raised = raised_by([&] { load_document(missing); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:FileNotReadable");
    EXPECT_EQ(raised.arguments, (std::vector<std::string>{missing, "No such file or directory"}));

    raised = raised_by([&] { load_document(dir_.string()); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:FileNotReadable");
    EXPECT_EQ(raised.arguments, (std::vector<std::string>{dir_.string(), "Is a directory"}));
}

TEST_F(LoadDocument, ExternalEntityIsNeverRead) {
    const auto secret = write("secret.txt", "TOP-SECRET");
    const auto path = write("xxe.xml", "<!DOCTYPE a [<!ENTITY x SYSTEM \"file://" + secret +
                                           "\">]>\n<a>before&x;after</a>");
    // The reference is left empty: the document loads, without the file's text.
    const auto doc = load_document(path);
    EXPECT_EQ(text_of(root_of(*doc)), "beforeafter");
}

TEST_F(LoadDocument, NetworkEntityIsRefusedWithoutPrintingAndLaterReadsAreUntouched) {
    const auto path = write("net.xml", "<!DOCTYPE a [<!ENTITY x SYSTEM \"http://127.0.0.1:9/x\">]>\n<a>[&x;]</a>");
    ::testing::internal::CaptureStderr();
    const auto doc = load_document(path);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(text_of(root_of(*doc)), "[]");

    // The refusal lasts only as long as the load: libxml2's own file reading works afterwards.
    const auto plain = write("plain.xml", "<plain/>");
    xmlDocPtr direct = xmlReadFile(plain.c_str(), nullptr, XML_PARSE_NONET);
    ASSERT_NE(direct, nullptr);
    xmlFreeDoc(direct);
}

TEST_F(LoadDocument, ExternalParameterEntityAndDtdAreNotRead) {
    const auto dtd = write("evil.dtd", "<!ENTITY leaked \"LEAKED\">");
    const auto path = write("pe.xml", "<!DOCTYPE a SYSTEM \"" + dtd + "\" [<!ENTITY % p SYSTEM \"" + dtd +
                                          "\"> %p;]>\n<a>x</a>");
    const auto doc = load_document(path);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(text_of(root_of(*doc)), "x");
    EXPECT_EQ(xmlGetDocEntity(doc->doc().get(), reinterpret_cast<const xmlChar*>("leaked")), nullptr);
}

TEST_F(LoadDocument, ReadsStandardInputAsStdin) {
    const auto path = write("in.xml", "<from-stdin/>");
    std::FILE* saved = std::freopen(path.c_str(), "r", stdin);
    ASSERT_NE(saved, nullptr);
    const auto doc = load_document("-");
    EXPECT_EQ(doc->source(), u"<stdin>");
    EXPECT_STREQ(reinterpret_cast<const char*>(root_of(*doc)->name), "from-stdin");
}

TEST(LoadDocumentFromMemory, SubstitutesInternalEntitiesAndKeepsCdata) {
    const auto doc = load_document_from_memory(
        "<!DOCTYPE a [<!ENTITY who \"world\">]><a><b>hello &who;</b><c><![CDATA[<raw> & text]]></c></a>", "m.xml");
    const xmlNode* b = tolven::test::find_element(*doc, "b");
    const xmlNode* c = tolven::test::find_element(*doc, "c");
    ASSERT_NE(b, nullptr);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(text_of(b), "hello world");
    ASSERT_NE(c->children, nullptr);
    EXPECT_EQ(c->children->type, XML_CDATA_SECTION_NODE);
    EXPECT_EQ(text_of(c), "<raw> & text");
}

TEST(LoadDocumentFromMemory, KeepsBlankTextAndAcceptsUndeclaredPrefixesAsNames) {
    const auto doc = load_document_from_memory("<a>\n  <x:b/>\n</a>", "m.xml");
    const xmlNode* a = root_of(*doc);
    ASSERT_NE(a->children, nullptr);
    EXPECT_EQ(a->children->type, XML_TEXT_NODE);
    const auto children = tolven::test::element_children(a);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_STREQ(reinterpret_cast<const char*>(children[0]->name), "x:b");
    EXPECT_EQ(children[0]->ns, nullptr);
}

TEST(LoadDocumentFromMemory, EmptyAndTruncatedTextAreMalformed) {
    auto raised = raised_by([] { load_document_from_memory("", "empty.xml"); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:MalformedDocument");
    ASSERT_EQ(raised.arguments.size(), 4u);
    EXPECT_EQ(raised.arguments[0], "empty.xml");

    raised = raised_by([] { load_document_from_memory("<a><b>", "cut.xml"); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:MalformedDocument");
    ASSERT_EQ(raised.arguments.size(), 4u);
    EXPECT_EQ(raised.arguments[0], "cut.xml");
    EXPECT_EQ(raised.arguments[1], "1");
}

TEST(LoadDocumentFromMemory, ConcurrentLoadsReportTheirOwnErrors) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &failures] {
            const std::string source = "thread" + std::to_string(t) + ".xml";
            const std::string bad = std::string(static_cast<std::size_t>(t) + 1, '\n') + "<a><b></a>";
            for (int i = 0; i < 50; ++i) {
                const auto raised = raised_by([&] { load_document_from_memory(bad, source); });
                if (raised.arguments.size() != 4 || raised.arguments[0] != source ||
                    raised.arguments[1] != std::to_string(t + 2))
                    ++failures[t];
                if (load_document_from_memory("<ok/>", source) == nullptr) ++failures[t];
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

TEST(LoadDocumentFromMemory, EntityExpansionBombIsRefused) {
    std::string xml = "<!DOCTYPE a [<!ENTITY e0 \"lollollollollollollollollollol\">";
    for (int i = 1; i <= 10; ++i)
        xml += "<!ENTITY e" + std::to_string(i) + " \"" + [&] {
            std::string refs;
            for (int k = 0; k < 10; ++k) refs += "&e" + std::to_string(i - 1) + ";";
            return refs;
        }() + "\">";
    xml += "]><a>&e10;</a>";
    const auto raised = raised_by([&] { load_document_from_memory(xml, "bomb.xml"); });
    EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:MalformedDocument");
}

}  // namespace
