#include "xml/xpath/NodeList.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "xml/errors.hpp"
#include "xml/support/parse_xml.hpp"
#include "xml/xpath/make_context.hpp"
#include "xml/xpath/register_detected_namespaces.hpp"

namespace {

using tolven::io::xml::common::error::XMLException;
using tolven::io::xml::common::error::XMLInvalidNodeset;
using tolven::io::xml::common::error::XMLInvalidXPathExpression;
using tolven::io::xml::common::error::XMLNamespaceError;
using tolven::io::xml::common::xpath::make_context;
using tolven::io::xml::common::xpath::NodeList;
using tolven::io::xml::common::xpath::register_detected_namespaces;
using tolven::test::parse_xml;

constexpr const char* kDoc = "<r xmlns:k='urn:k'><a id='1'>x</a><a id='2'>y</a><k:b/><!-- note --></r>";

// The strings and message carried by what evaluating expression throws (empty when nothing).
template <class Error>
std::pair<std::vector<std::u16string>, std::u16string> thrown(const std::shared_ptr<xmlXPathContext>& context,
                                                              std::u16string_view expression) {
    try {
        NodeList nodes(context, expression);
    } catch (const Error& error) {
        return {error.strings(), error.message()};
    } catch (const std::exception& other) {
        ADD_FAILURE() << "unexpected exception: " << other.what();
    }
    return {};
}

struct Fixture {
    std::shared_ptr<tolven::io::xml::common::vcos::DocWrapper> doc = parse_xml(kDoc);
    std::shared_ptr<xmlXPathContext> context = make_context(doc->doc());
};

TEST(NodeList, SelectsNodesInDocumentOrder) {
    Fixture f;
    register_detected_namespaces(f.doc->doc(), f.context, nullptr, true);
    NodeList nodes(f.context, u"/r/* | //@id | //comment()");
    ASSERT_EQ(nodes.size(), 6u);
    EXPECT_STREQ(reinterpret_cast<const char*>(nodes.get_node_at_index(0)->name), "a");
    EXPECT_TRUE(nodes.is_element_node(0));
    EXPECT_EQ(nodes.get_node_at_index(1)->type, XML_ATTRIBUTE_NODE);
    EXPECT_FALSE(nodes.is_element_node(1));
    EXPECT_STREQ(reinterpret_cast<const char*>(nodes.get_node_at_index(4)->name), "b");
    EXPECT_EQ(nodes.get_node_at_index(5)->type, XML_COMMENT_NODE);
    EXPECT_THROW(nodes.get_node_at_index(6), std::out_of_range);

    NodeList prefixed(f.context, u"//k:b");
    EXPECT_EQ(prefixed.size(), 1u);
    NodeList nothing(f.context, u"//missing");
    EXPECT_TRUE(nothing.empty());
    NodeList second(f.context, u"(//a)[last()]/@id");
    ASSERT_EQ(second.size(), 1u);
    EXPECT_STREQ(reinterpret_cast<const char*>(second.get_node_at_index(0)->children->content), "2");
}

TEST(NodeList, RelativeExpressionStartsAtTheContextNode) {
    Fixture f;
    NodeList as(f.context, u"/r/a");
    ASSERT_EQ(as.size(), 2u);
    NodeList text(f.context, u"text()", as.get_node_at_index(1));
    ASSERT_EQ(text.size(), 1u);
    EXPECT_STREQ(reinterpret_cast<const char*>(text.get_node_at_index(0)->content), "y");
    // The context node is given back: a later relative evaluation starts at the document again.
    EXPECT_EQ(NodeList(f.context, u"r/a").size(), 2u);
}

TEST(NodeList, UnregisteredPrefixCarriesThePrefix) {
    Fixture f;
    auto [strings, message] = thrown<XMLNamespaceError>(f.context, u"//x:a");
    EXPECT_EQ(strings, std::vector<std::u16string>{u"x"});
    EXPECT_EQ(message, u"x");

    // A registered prefix before it, axis names and string literals are not mistaken for it.
    register_detected_namespaces(f.doc->doc(), f.context, nullptr, true);
    std::tie(strings, message) = thrown<XMLNamespaceError>(f.context, u"//k:b[@id='q:r']/child::zz:c");
    EXPECT_EQ(strings, std::vector<std::u16string>{u"zz"});

    // A prefixed function or variable: libxml2 only sets the code (and would print the rest).
    ::testing::internal::CaptureStderr();
    std::tie(strings, message) = thrown<XMLNamespaceError>(f.context, u"fn:count(//a) > $v:limit");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(strings, std::vector<std::u16string>{u"fn"});
}

TEST(NodeList, NonNodeSetResultsCarryExpressionAndKind) {
    Fixture f;
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"count(//a)", u"number"}, {u"string(/r/a)", u"string"}, {u"1=1", u"boolean"}};
    for (const auto& [expression, kind] : cases) {
        const auto [strings, message] = thrown<XMLInvalidNodeset>(f.context, expression);
        EXPECT_EQ(strings, (std::vector<std::u16string>{expression, kind}));
        EXPECT_EQ(message, expression);
    }
}

TEST(NodeList, MalformedExpressionsCarryExpressionAndLibxmlMessage) {
    Fixture f;
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"//[", u"Invalid expression"},
        {u"//a[1", u"Invalid predicate"},
        {u"nosuch(//a)", u"Unregistered function"},
        {u"'open", u"Unfinished literal"},
        {u"$v", u"Undefined variable"},
    };
    for (const auto& [expression, libxml_message] : cases) {
        const auto [strings, message] = thrown<XMLInvalidXPathExpression>(f.context, expression);
        EXPECT_EQ(strings, (std::vector<std::u16string>{expression, libxml_message}));
        EXPECT_EQ(message, expression + u": " + libxml_message);
    }
}

TEST(NodeList, ErrorsAreXmlExceptionsWithUtf8What) {
    Fixture f;
    try {
        NodeList nodes(f.context, u"//[");
        FAIL() << "no error raised";
    } catch (const XMLException& error) {
        EXPECT_STREQ(error.what(), "//[: Invalid expression");
    }
}

TEST(NodeList, ContextErrorHandlerIsRestoredAfterAFailure) {
    Fixture f;
    EXPECT_THROW(NodeList(f.context, u"//["), XMLInvalidXPathExpression);
    EXPECT_EQ(f.context->error, nullptr);
    EXPECT_EQ(f.context->userData, nullptr);
}

TEST(NodeList, EvaluatesConcurrentlyOnSeparateDocuments) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &failures] {
            Fixture f;
            register_detected_namespaces(f.doc->doc(), f.context, nullptr, true);
            for (int i = 0; i < 200; ++i) {
                try {
                    NodeList nodes(f.context, (i % 2 == 0) ? u"//y:a" : u"//[");
                    ++failures[t];
                } catch (const XMLNamespaceError& error) {
                    if (error.strings() != std::vector<std::u16string>{u"y"}) ++failures[t];
                } catch (const XMLInvalidXPathExpression& error) {
                    if (error.strings().size() != 2 || error.strings()[1] != u"Invalid expression") ++failures[t];
                }
                if (NodeList(f.context, u"//k:b").size() != 1) ++failures[t];
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
