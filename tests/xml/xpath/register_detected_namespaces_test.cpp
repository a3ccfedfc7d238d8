#include "xml/xpath/register_detected_namespaces.hpp"

#include <gtest/gtest.h>
#include <libxml/xpathInternals.h>

#include <optional>
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
using tolven::test::raised_by;
using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr const char* kInvalid = "TOLVEN:io:xml:common:InvalidRegisteredNamespaces";

StringPtr table(const Pairs& rows) {
    auto strings = Harnvale::String::createStringArray(rows.size(), 2);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        strings->set(r, 0, fl::i18n::utf8_to_ustring(rows[r].first));
        strings->set(r, 1, fl::i18n::utf8_to_ustring(rows[r].second));
    }
    return strings;
}

Pairs pairs_of(const StringPtr& strings) {
    Pairs pairs;
    EXPECT_EQ(strings->cols(), 2u);
    for (std::size_t r = 0; r < strings->rows(); ++r)
        pairs.emplace_back(fl::i18n::ustring_to_utf8(*strings->at(r, 0)), fl::i18n::ustring_to_utf8(*strings->at(r, 1)));
    return pairs;
}

// The registration of xml on a fresh context, and the context, so lookups can be checked.
struct Registered {
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc;
    std::shared_ptr<xmlXPathContext> context;
    DetectionResult result;

    std::string bound(const char* prefix) const {
        const xmlChar* uri = xmlXPathNsLookup(context.get(), reinterpret_cast<const xmlChar*>(prefix));
        return uri ? reinterpret_cast<const char*>(uri) : "";
    }
};

Registered register_on(const char* xml, StringPtr caller, bool detect) {
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
    const auto r = register_on(kMixed, nullptr, true);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"ns", "urn:default"},
                                                     {"p", "urn:p"},
                                                     {"q", "urn:q"},
                                                     {"p2", "urn:other-p2"},
                                                     {"p3", "urn:second-p"},
                                                     {"ns2", "urn:second-default"}}));
    EXPECT_EQ(r.result.prefixes.at("urn:second-p"), "p3");
    EXPECT_EQ(r.result.prefixes.at("urn:default"), "ns");
    EXPECT_EQ(r.bound("p3"), "urn:second-p");
    EXPECT_EQ(r.bound("ns2"), "urn:second-default");
}

TEST(RegisterDetectedNamespaces, CallerPairsComeFirstAndKeepTheirPrefixes) {
    const auto r = register_on(kMixed, table({{"x", "urn:p"}, {"ns", "urn:caller"}}), true);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"x", "urn:p"},
                                                     {"ns", "urn:caller"},
                                                     {"ns2", "urn:default"},
                                                     {"q", "urn:q"},
                                                     {"p2", "urn:other-p2"},
                                                     {"p", "urn:second-p"},
                                                     {"ns3", "urn:second-default"}}));
    EXPECT_EQ(r.result.prefixes.at("urn:p"), "x");
    EXPECT_EQ(r.bound("x"), "urn:p");
    EXPECT_EQ(r.bound("p"), "urn:second-p");
}

TEST(RegisterDetectedNamespaces, CallerPairForAKnownUriWorksButTheMapKeepsTheFirstPrefix) {
    const auto r = register_on("<a xmlns:p='urn:p'/>", table({{"one", "urn:p"}, {"two", "urn:p"}}), true);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"one", "urn:p"}, {"two", "urn:p"}}));
    EXPECT_EQ(r.result.prefixes.at("urn:p"), "one");
    EXPECT_EQ(r.bound("two"), "urn:p");
    EXPECT_EQ(r.bound("p"), "");
}

TEST(RegisterDetectedNamespaces, UndeclarationsAndTheXmlPrefixRegisterNothing) {
    const auto r = register_on(
        "<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'><b xmlns=''/><c xmlns='urn:c'/></a>",
        nullptr, true);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"ns", "urn:c"}}));
    EXPECT_EQ(r.result.prefixes.at("http://www.w3.org/XML/1998/namespace"), "xml");
    EXPECT_EQ(r.result.prefixes.size(), 2u);
}

TEST(RegisterDetectedNamespaces, WithoutDetectionOnlyCallerPairsAreRegistered) {
    const auto r = register_on(kMixed, table({{"d", "urn:default"}}), false);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"d", "urn:default"}}));
    EXPECT_EQ(r.bound("p"), "");
    EXPECT_EQ(r.result.prefixes.count("urn:p"), 0u);
}

TEST(RegisterDetectedNamespaces, NothingRegisteredGivesAZeroByTwoArrayAndOnlyTheXmlNamespace) {
    const auto r = register_on("<a><b/></a>", nullptr, true);
    EXPECT_EQ(r.result.registered->rows(), 0u);
    EXPECT_EQ(r.result.registered->cols(), 2u);
    EXPECT_EQ(r.result.prefixes, (tolven::io::xml::common::xpath::NamespaceMap{
                                     {"http://www.w3.org/XML/1998/namespace", "xml"}}));
}

TEST(RegisterDetectedNamespaces, EmptyShapesAndAMissingScalarMeanNoPairs) {
    auto missing = Harnvale::String::createStringArray(1, 1);
    missing->setMissing(0);
    for (const StringPtr& none : {StringPtr(), Harnvale::String::createStringArray(0, 0),
                                  Harnvale::String::createStringArray(0, 2), missing}) {
        const auto r = register_on("<a xmlns:p='urn:p'/>", none, true);
        EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"p", "urn:p"}}));
    }
}

TEST(RegisterDetectedNamespaces, InvalidTablesNameWhatIsWrong) {
    auto with_missing = [](std::size_t index) {
        auto strings = table({{"a", "urn:a"}, {"b", "urn:b"}});
        strings->setMissing(index);
        return strings;
    };
    const std::vector<std::pair<StringPtr, std::string>> cases = {
        {Harnvale::String::createStringArray(1, 3), "it must be an N-by-2 string array of (prefix, URI) rows, but it is 1-by-3."},
        {Harnvale::String::createStringArray(0, 1), "it must be an N-by-2 string array of (prefix, URI) rows, but it is 0-by-1."},
        {Harnvale::String::createStringArray(std::u16string_view(u"p")), "it must be an N-by-2 string array of (prefix, URI) rows, but it is 1-by-1."},
        {with_missing(1), "row 2: the prefix is missing."},  // column-major: element 1 is (2, 1)
        {with_missing(2), "row 1: the URI is missing."},
        {table({{"a", "urn:a"}, {"", "urn:b"}}), "row 2: the prefix is empty."},
        {table({{"a", ""}}), "row 1: the URI is empty."},
        {table({{"xml", "urn:a"}}), "row 1: the prefix 'xml' is reserved."},
        {table({{"a", "urn:a"}, {"xmlns", "urn:b"}}), "row 2: the prefix 'xmlns' is reserved."},
        {table({{"a", "urn:a"}, {"b", "urn:b"}, {"a", "urn:c"}}),
         "row 3: the prefix 'a' is already bound to 'urn:a' by row 1."},
    };
    for (const auto& [strings, text] : cases) {
        const auto doc = parse_xml("<a xmlns:p='urn:p'/>");
        const auto context = make_context(doc->doc());
        const auto raised = raised_by([&] { register_detected_namespaces(doc->doc(), context, strings, true); });
        EXPECT_EQ(raised.id, kInvalid) << text;
        EXPECT_EQ(raised.arguments, std::vector<std::string>{text});
        // Nothing is registered when the table is rejected.
        EXPECT_EQ(xmlXPathNsLookup(context.get(), reinterpret_cast<const xmlChar*>("a")), nullptr);
    }
}

TEST(RegisterDetectedNamespaces, RepeatedIdenticalRowRegistersOnce) {
    const auto r = register_on("<a/>", table({{"a", "urn:a"}, {"a", "urn:a"}}), true);
    EXPECT_EQ(pairs_of(r.result.registered), (Pairs{{"a", "urn:a"}}));
}

}  // namespace
