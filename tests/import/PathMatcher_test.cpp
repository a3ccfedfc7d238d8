#include "import/PathMatcher.hpp"

#include <gtest/gtest.h>

namespace {

using tolven::import::compile_path;
using tolven::import::NameTest;
using tolven::import::PathPattern;

PathPattern compiled(std::string_view selector, bool relative = false) {
    auto result = compile_path(selector, relative, {{"ns", "urn:a"}, {"geo", "urn:geo"}});
    if (auto* reason = std::get_if<std::string>(&result)) ADD_FAILURE() << selector << ": " << *reason;
    return std::get_if<PathPattern>(&result) ? std::get<PathPattern>(result) : PathPattern{};
}

std::string reason(std::string_view selector, bool relative = false) {
    auto result = compile_path(selector, relative, {{"ns", "urn:a"}});
    return std::holds_alternative<PathPattern>(result) ? "(compiled)" : std::get<std::string>(result);
}

TEST(PathMatcher, CompilesChildStepsNamesPositionsAndAFinalAttribute) {
    const PathPattern p = compiled("/ns:feed/ns:entry[2]/geo:lat/@xml:lang");
    ASSERT_EQ(p.elements.size(), 3u);
    EXPECT_TRUE(p.elements[0].name.matches("urn:a", "feed"));
    EXPECT_FALSE(p.elements[0].name.matches(nullptr, "feed"));
    EXPECT_FALSE(p.elements[0].name.matches("urn:geo", "feed"));
    EXPECT_EQ(p.elements[1].position, 2u);
    EXPECT_TRUE(p.uses_positions());
    ASSERT_TRUE(p.attribute);
    EXPECT_TRUE(p.attribute->matches("http://www.w3.org/XML/1998/namespace", "lang"));

    const PathPattern any = compiled("/*/*[local-name()='a:b']/x");
    EXPECT_EQ(any.elements[0].name.kind, NameTest::Kind::Any);
    EXPECT_TRUE(any.elements[1].name.matches("urn:whatever", "a:b"));
    // An unprefixed name is in no namespace, as in XPath 1.0.
    EXPECT_FALSE(any.elements[2].name.matches("urn:a", "x"));
    EXPECT_TRUE(any.elements[2].name.matches(nullptr, "x"));

}

TEST(PathMatcher, ParenthesizedPathAtTheStartIsTheSamePath) {
    const PathPattern p = compiled("(/catalog/book[2])/author");
    ASSERT_EQ(p.elements.size(), 3u);
    EXPECT_EQ(p.elements[1].position, 2u);
    EXPECT_EQ(compiled("((/a))/@b").elements.size(), 1u);
}

TEST(PathMatcher, SaysWhyASelectorCannotBeFollowed) {
    const std::pair<const char*, const char*> cases[] = {
        {"(/a/b)[2]", "uses parentheses followed by '['"},
        {"(/a/b", "has an unclosed parenthesis"},
        {"/a/b['x|y']", "has a predicate other than a position '['x|y']'"},
        {"/a/b[last()]", "calls a function in the predicate '[last()]'"},
        {"/a/b[0]", "has the position [0], which selects nothing"},
        {"/a/b[1", "has an unclosed quote or bracket"},
        {"/a/text()", "uses a function or node test 'text()'"},
        {"/a/child::b", "names an axis in 'child::b'"},
        {"/a/@b/c", "has a step below an attribute"},
        {"/a/x:b", "uses the namespace prefix 'x', which is not registered"},
        {"/", "selects the document, not elements"},
        {"a/b", "is not an absolute path from the root"},
    };
    for (const auto& [selector, why] : cases) EXPECT_EQ(reason(selector), why) << selector;
    EXPECT_EQ(reason(".//a", true), "uses the descendant axis ('//')");
}

}  // namespace
