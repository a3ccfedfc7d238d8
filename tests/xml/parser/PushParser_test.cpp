#include "xml/parser/PushParser.hpp"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "xml/support/Recorder.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::parser::PushParser;
using tolven::test::raised_by;
using tolven::test::Recorder;

std::string events(const std::string& xml, Recorder& recorder, std::size_t chunk = 7) {
    PushParser parser("doc.xml", {}, recorder);
    for (std::size_t at = 0; at < xml.size(); at += chunk)
        if (!parser.feed(xml.data() + at, std::min(chunk, xml.size() - at))) return recorder.log + " (stopped)";
    parser.finish();
    return recorder.log;
}

TEST(PushParser, StreamsElementsAttributesAndTextWithEntitiesExpandedInChunks) {
    const std::string xml = "<!DOCTYPE a [<!ENTITY e \"<b n='&#49;'>x</b>\">]><a xmlns='urn:a' k='&amp;'>t<!-- c -->"
                            "<?pi?><![CDATA[<y>]]>&e;</a>";
    Recorder recorder;
    EXPECT_EQ(events(xml, recorder), "<urn:a|a @k=& +1>\"t\"\"<y>\"<urn:a|b @n=1>\"x\"//");
    // Names are interned: one pointer per name within a parse.
    Recorder names;
    PushParser parser("doc.xml", {}, names);
    const char* a = parser.intern("a");
    parser.feed(xml.data(), xml.size());
    EXPECT_EQ(names.first_local, a);
}

TEST(PushParser, AHandlerStopsTheParseOrFailsItWithOutOfMemory) {
    Recorder stopping;
    stopping.elements_until_stop = 1;
    // Once stopped, nothing more is parsed: the broken end is never met.
    EXPECT_EQ(events("<a><b/><c/></broken>", stopping, 3), "<|a> (stopped)");

    Recorder failing;
    failing.elements_until_stop = 1;
    failing.fail = true;
    EXPECT_EQ(raised_by([&] { events("<a><b/></a>", failing); }).id, "TOLVEN:io:xml:common:OutOfMemory");
}

}  // namespace
