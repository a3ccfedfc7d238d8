#include "xml/xpath/NodeList.hpp"

#include <gtest/gtest.h>

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

// What evaluating expression throws as Error (all empty when nothing).
struct Thrown {
    std::vector<std::u16string> strings;
    std::u16string message;
    std::string what;
};
template <class Error>
Thrown thrown(const std::shared_ptr<xmlXPathContext>& context, std::u16string_view expression) {
    try {
        NodeList nodes(context, expression);
    } catch (const Error& error) {
        return {error.strings(), error.message(), static_cast<const XMLException&>(error).what()};
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
    EXPECT_TRUE(nodes.is_element_node(0));
    EXPECT_EQ(nodes.get_node_at_index(1)->type, XML_ATTRIBUTE_NODE);
    EXPECT_FALSE(nodes.is_element_node(1));
    EXPECT_EQ(nodes.get_node_at_index(5)->type, XML_COMMENT_NODE);
    EXPECT_THROW(nodes.get_node_at_index(6), std::out_of_range);
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
    const auto unregistered = thrown<XMLNamespaceError>(f.context, u"//x:a");
    EXPECT_EQ(unregistered.strings, std::vector<std::u16string>{u"x"});
    EXPECT_EQ(unregistered.message, u"x");

    // A registered prefix before it, axis names and string literals are not mistaken for it.
    register_detected_namespaces(f.doc->doc(), f.context, nullptr, true);
    EXPECT_EQ(thrown<XMLNamespaceError>(f.context, u"//k:b[@id='q:r']/child::zz:c").strings,
              std::vector<std::u16string>{u"zz"});

    // A prefixed function or variable: libxml2 only sets the code (and would print the rest).
    ::testing::internal::CaptureStderr();
    const auto function = thrown<XMLNamespaceError>(f.context, u"fn:count(//a) > $v:limit");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(function.strings, std::vector<std::u16string>{u"fn"});
}

TEST(NodeList, NonNodeSetResultsCarryExpressionAndKind) {
    Fixture f;
    const std::vector<std::pair<std::u16string, std::u16string>> cases = {
        {u"count(//a)", u"number"}, {u"string(/r/a)", u"string"}, {u"1=1", u"boolean"}};
    for (const auto& [expression, kind] : cases) {
        const auto error = thrown<XMLInvalidNodeset>(f.context, expression);
        EXPECT_EQ(error.strings, (std::vector<std::u16string>{expression, kind}));
        EXPECT_EQ(error.message, expression);
    }
}

TEST(NodeList, MalformedExpressionsCarryExpressionAndLibxmlMessage) {
    Fixture f;
    const auto invalid = thrown<XMLInvalidXPathExpression>(f.context, u"//[");
    EXPECT_EQ(invalid.strings, (std::vector<std::u16string>{u"//[", u"Invalid expression"}));
    EXPECT_EQ(invalid.message, u"//[: Invalid expression");
    EXPECT_EQ(invalid.what, "//[: Invalid expression");
    EXPECT_EQ(thrown<XMLInvalidXPathExpression>(f.context, u"//a[1").strings,
              (std::vector<std::u16string>{u"//a[1", u"Invalid predicate"}));
    // The context's error handler is given back.
    EXPECT_EQ(f.context->error, nullptr);
    EXPECT_EQ(f.context->userData, nullptr);
}

TEST(NodeList, EvaluatesConcurrentlyOnSeparateDocuments) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t, &failures] {
            Fixture f;
            register_detected_namespaces(f.doc->doc(), f.context, nullptr, true);
            for (int i = 0; i < 100; ++i) {
                if (thrown<XMLNamespaceError>(f.context, u"//y:a").strings != std::vector<std::u16string>{u"y"})
                    ++failures[t];
                if (thrown<XMLInvalidXPathExpression>(f.context, u"//[").what != "//[: Invalid expression") ++failures[t];
                if (NodeList(f.context, u"//k:b").size() != 1) ++failures[t];
            }
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
