#include "xml/parser/EventRelay.hpp"

#include <gtest/gtest.h>

#include <string>

#include "xml/parser/PushParser.hpp"
#include "xml/support/Recorder.hpp"
#include "xml/support/parse_xml.hpp"

namespace {

using tolven::io::xml::common::parser::EventRelay;
using tolven::io::xml::common::parser::PushParser;
using tolven::test::raised_by;
using tolven::test::Recorder;

// The events of xml as recorder logs them, on this thread or through a relay; text pieces that
// follow each other are joined, as the relay joins them.
std::string events(const std::string& xml, Recorder& recorder, bool relayed, bool* completed = nullptr) {
    EventRelay relay(recorder, "doc.xml");
    PushParser parser("doc.xml", {}, relayed ? static_cast<tolven::io::xml::common::parser::SaxHandler&>(relay) : recorder);
    constexpr std::size_t kChunk = 5000;
    bool more = true;
    for (std::size_t at = 0; more && at < xml.size(); at += kChunk)
        more = parser.feed(xml.data() + at, std::min(kChunk, xml.size() - at));
    if (more) parser.finish();
    const bool done = relayed ? relay.finish() : more;
    if (completed != nullptr) *completed = done;
    std::string log;
    for (std::size_t at = 0; at < recorder.log.size(); ++at) {
        if (recorder.log.compare(at, 2, "\"\"") == 0) ++at;
        else log += recorder.log[at];
    }
    return log;
}

// Every kind of record: plain elements, prefixed and namespaced ones, attributes, declarations,
// text joined from pieces (entities, CDATA), and one text longer than a batch.
std::string many_rows(int n) {
    std::string xml = "<!DOCTYPE t [<!ENTITY e 'x<b/>y'>]><t xmlns:p='urn:p'>";
    for (int i = 0; i < n; ++i) {
        xml += "<r i='" + std::to_string(i) + "' p:q='v&amp;w'>text &e; <![CDATA[<c>]]>" + std::to_string(i) +
               "<p:s>z</p:s><d xmlns='urn:d'/>";
        if (i == 7) xml += std::string(300000, 'L');
        xml += "</r>\n";
    }
    return xml + "</t>";
}

TEST(EventRelay, HandsOverEveryEventInOrderAcrossBatches) {
    for (const int rows : {1, 20000}) {
        const std::string xml = many_rows(rows);
        Recorder direct, relayed;
        const std::string expected = events(xml, direct, false);
        EXPECT_EQ(events(xml, relayed, true), expected) << rows;
        EXPECT_GT(expected.size(), rows > 1 ? std::size_t{1} << 19 : 0);  // several batches
    }
}

TEST(EventRelay, AHandlerThatStopsOrThrowsStopsTheParse) {
    const std::string xml = many_rows(20000);
    Recorder stopping;
    stopping.elements_until_stop = 15000;
    bool completed = true;
    events(xml, stopping, true, &completed);
    EXPECT_FALSE(completed);
    EXPECT_EQ(stopping.log.find("i=15000"), std::string::npos);

    Recorder failing;
    failing.elements_until_stop = 100;
    failing.fail = true;
    EXPECT_EQ(raised_by([&] { events(xml, failing, true); }).id, "TOLVEN:io:xml:common:OutOfMemory");
}

}  // namespace
