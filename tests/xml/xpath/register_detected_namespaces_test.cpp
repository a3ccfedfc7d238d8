#include "xml/xpath/register_detected_namespaces.hpp"

#include <gtest/gtest.h>
#include <libxml/xpathInternals.h>

#include <string>
#include <utility>
#include <vector>

#include "host/utf.hpp"
#include "xml/support/parse_xml.hpp"
#include "xml/xpath/make_context.hpp"

namespace {

using Harnvale::String::StringPtr;
using tolven::io::xml::common::xpath::DetectionResult;
using tolven::io::xml::common::xpath::make_context;
using tolven::io::xml::common::xpath::register_detected_namespaces;
using tolven::test::parse_xml;
using Pairs = std::vector<std::pair<std::string, std::string>>;

StringPtr table(const Pairs& rows) {
    auto strings = Harnvale::String::createStringArray(rows.size(), 2);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        strings->set(r, 0, fl::i18n::utf8_to_ustring(rows[r].first));
        strings->set(r, 1, fl::i18n::utf8_to_ustring(rows[r].second));
    }
    return strings;
}

// The registration of xml on a fresh context, and the context, so lookups can be checked.
struct Registered {
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc;
    std::shared_ptr<xmlXPathContext> context;
    DetectionResult result;

    // The registered rows as "prefix=URI" words.
    std::string pairs() const {
        EXPECT_EQ(result.registered->cols(), 2u);
        std::string out;
        for (std::size_t r = 0; r < result.registered->rows(); ++r)
            out += (r ? " " : "") + fl::i18n::ustring_to_utf8(*result.registered->at(r, 0)) + "=" +
                   fl::i18n::ustring_to_utf8(*result.registered->at(r, 1));
        return out;
    }
    std::string bound(const char* prefix) const {
        const xmlChar* uri = xmlXPathNsLookup(context.get(), reinterpret_cast<const xmlChar*>(prefix));
        return uri ? reinterpret_cast<const char*>(uri) : "";
    }
};

Registered register_on(const char* xml, StringPtr caller, bool detect = true) {
    Registered r;
    r.doc = parse_xml(xml);
    r.context = make_context(r.doc->doc());
    r.result = register_detected_namespaces(r.doc->doc(), r.context, std::move(caller), detect);
    return r;
}

constexpr const char* kMixed =
    "<a xmlns='urn:default' xmlns:p='urn:p'>"
    "  <b xmlns:q='urn:q' xmlns:p2='urn:other-p2'><c xmlns:p='urn:second-p' xmlns='urn:second-default'/></b>"
    "  <d xmlns:q='urn:q'/>"
    "</a>";

TEST(RegisterDetectedNamespaces, DetectsDeclarationsInDocumentOrderAndSettlesConflicts) {
    const auto r = register_on(kMixed, nullptr);
    EXPECT_EQ(r.pairs(), "ns=urn:default p=urn:p q=urn:q p2=urn:other-p2 p3=urn:second-p ns2=urn:second-default");
    EXPECT_EQ(r.result.prefixes.at("urn:second-p"), "p3");
    EXPECT_EQ(r.bound("ns2"), "urn:second-default");
    // A second prefix for a URI comes last, where it is free; the URI keeps its first prefix.
    const auto two = register_on("<a xmlns:p='urn:u'><b xmlns:q='urn:u' xmlns:r='urn:u'/><c xmlns:r='urn:r'/></a>", nullptr);
    EXPECT_EQ(two.pairs(), "p=urn:u r=urn:r q=urn:u");
    EXPECT_EQ(two.result.prefixes.at("urn:u"), "p");
}

TEST(RegisterDetectedNamespaces, CallerPairsComeFirstAndKeepTheirPrefixes) {
    const auto r = register_on(kMixed, table({{"x", "urn:p"}, {"ns", "urn:caller"}}));
    EXPECT_EQ(r.pairs(),
              "x=urn:p ns=urn:caller ns2=urn:default q=urn:q p2=urn:other-p2 p=urn:second-p ns3=urn:second-default");
    EXPECT_EQ(r.result.prefixes.at("urn:p"), "x");
    EXPECT_EQ(r.bound("p"), "urn:second-p");
    // A repeated identical row registers once.
    EXPECT_EQ(register_on("<a/>", table({{"a", "urn:a"}, {"a", "urn:a"}})).pairs(), "a=urn:a");
}

TEST(RegisterDetectedNamespaces, UndeclarationsAndTheXmlPrefixRegisterNothing) {
    const auto r = register_on(
        "<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'><b xmlns=''/><c xmlns='urn:c'/></a>", nullptr);
    EXPECT_EQ(r.pairs(), "ns=urn:c");
    EXPECT_EQ(r.result.prefixes.at("http://www.w3.org/XML/1998/namespace"), "xml");
    EXPECT_EQ(r.result.prefixes.size(), 2u);
    EXPECT_EQ(register_on("<a><b/></a>", nullptr).pairs(), "");  // still N-by-2
}

TEST(RegisterDetectedNamespaces, WithoutDetectionOnlyCallerPairsAreRegistered) {
    const auto r = register_on(kMixed, table({{"d", "urn:default"}}), false);
    EXPECT_EQ(r.pairs(), "d=urn:default");
    EXPECT_EQ(r.bound("p"), "");
}

TEST(RegisterDetectedNamespaces, EmptyShapesAndAMissingScalarMeanNoPairs) {
    auto missing = Harnvale::String::createStringArray(1, 1);
    missing->setMissing(0);
    for (const StringPtr& none : {StringPtr(), Harnvale::String::createStringArray(0, 2), missing})
        EXPECT_EQ(register_on("<a xmlns:p='urn:p'/>", none).pairs(), "p=urn:p");
}

TEST(RegisterDetectedNamespaces, InvalidTablesNameWhatIsWrong) {
    auto missing_prefix = table({{"a", "urn:a"}, {"b", "urn:b"}});
    missing_prefix->setMissing(1);  // column-major: element 1 is (2, 1)
    const std::vector<std::pair<StringPtr, std::string>> cases = {
        {Harnvale::String::createStringArray(1, 3), "it must be an N-by-2 string array of (prefix, URI) rows, but it is 1-by-3."},
        {Harnvale::String::createStringArray(0, 1), "it must be an N-by-2 string array of (prefix, URI) rows, but it is 0-by-1."},
        {missing_prefix, "row 2: the prefix is missing."},
        {table({{"a", "urn:a"}, {"", "urn:b"}}), "row 2: the prefix is empty."},
        {table({{"xml", "urn:a"}}), "row 1: the prefix 'xml' is reserved."},
        {table({{"a", "urn:a"}, {"xmlns", "urn:b"}}), "row 2: the prefix 'xmlns' is reserved."},
        {table({{"a", "urn:a"}, {"b", "urn:b"}, {"a", "urn:c"}}),
         "row 3: the prefix 'a' is already bound to 'urn:a' by row 1."},
    };
    for (const auto& [strings, text] : cases) {
        const auto doc = parse_xml("<a xmlns:p='urn:p'/>");
        const auto context = make_context(doc->doc());
        const auto raised =
            tolven::test::raised_by([&] { register_detected_namespaces(doc->doc(), context, strings, true); });
        EXPECT_EQ(raised.id, "TOLVEN:io:xml:common:InvalidRegisteredNamespaces") << text;
        EXPECT_EQ(raised.arguments, std::vector<std::string>{text});
        // Nothing is registered when the table is rejected.
        EXPECT_EQ(xmlXPathNsLookup(context.get(), reinterpret_cast<const xmlChar*>("a")), nullptr);
    }
}

}  // namespace
