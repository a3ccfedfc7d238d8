#include "cli/import/PathMatcher.hpp"

#include <gtest/gtest.h>

#include "cli/import/PathTracker.hpp"

namespace {

using tolven::cli::import::compile_path;
using tolven::cli::import::NamespaceBindings;
using tolven::cli::import::NameTest;
using tolven::cli::import::PathPattern;
using tolven::cli::import::PathTracker;

const NamespaceBindings kNamespaces = {{"ns", "urn:a"}, {"geo", "urn:geo"}};

PathPattern compiled(std::string_view selector, bool relative = false) {
    auto result = compile_path(selector, relative, kNamespaces);
    if (auto* reason = std::get_if<std::string>(&result)) ADD_FAILURE() << selector << ": " << *reason;
    return std::get_if<PathPattern>(&result) ? std::get<PathPattern>(result) : PathPattern{};
}

std::string reason(std::string_view selector, bool relative = false) {
    auto result = compile_path(selector, relative, kNamespaces);
    if (std::holds_alternative<PathPattern>(result)) return "(compiled)";
    return std::get<std::string>(result);
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
    EXPECT_EQ(any.elements[1].name.kind, NameTest::Kind::LocalName);
    EXPECT_TRUE(any.elements[1].name.matches("urn:whatever", "a:b"));
    // An unprefixed name is in no namespace, as in XPath 1.0.
    EXPECT_FALSE(any.elements[2].name.matches("urn:a", "x"));
    EXPECT_TRUE(any.elements[2].name.matches(nullptr, "x"));
}

TEST(PathMatcher, RelativeSelectorsAndTheContextItself) {
    EXPECT_TRUE(compiled(".", true).elements.empty());
    EXPECT_FALSE(compiled(".", true).attribute);
    EXPECT_TRUE(compiled("./@id", true).attribute);
    EXPECT_EQ(compiled("./a/b", true).elements.size(), 2u);
    EXPECT_EQ(reason(".//a", true), "uses the descendant axis ('//')");
    EXPECT_EQ(reason("a/b", false), "is not an absolute path from the root");
}

TEST(PathMatcher, ParenthesizedPathAtTheStartIsTheSamePath) {
    const PathPattern p = compiled("(/catalog/book[2])/author");
    ASSERT_EQ(p.elements.size(), 3u);
    EXPECT_EQ(p.elements[1].position, 2u);
    EXPECT_EQ(compiled("((/a))/@b").elements.size(), 1u);
    EXPECT_EQ(reason("(/a/b)[2]"), "uses parentheses followed by '['");
    EXPECT_EQ(reason("(/a|/b)/c"), "uses a union ('|')");
    EXPECT_EQ(reason("(/a/b"), "has an unclosed parenthesis");
}

TEST(PathMatcher, SaysWhyASelectorCannotBeFollowed) {
    EXPECT_EQ(reason("/a/b[c>5]"), "has a predicate other than a position '[c>5]'");
    EXPECT_EQ(reason("/a/b[last()]"), "calls a function in the predicate '[last()]'");
    EXPECT_EQ(reason("//b"), "uses the descendant axis ('//')");
    EXPECT_EQ(reason("/a/text()"), "uses a function or node test 'text()'");
    EXPECT_EQ(reason("/a/child::b"), "names an axis in 'child::b'");
    EXPECT_EQ(reason("/a/@b/c"), "has a step below an attribute");
    EXPECT_EQ(reason("/a/x:b"), "uses the namespace prefix 'x', which is not registered");
    EXPECT_EQ(reason("/a/b[0]"), "has the position [0], which selects nothing");
    EXPECT_EQ(reason("/a/b['x|y']"), "has a predicate other than a position '['x|y']'");
    EXPECT_EQ(reason("/"), "selects the document, not elements");
    EXPECT_EQ(reason("/a/b[1"), "has an unclosed quote or bracket");
}

// Opens the elements of a path, one per depth, and says whether the last one matched pattern 0.
TEST(PathTracker, PositionsCountSiblingsThatPassTheNameTest) {
    const PathPattern p = compiled("/t/r[2]/v");
    PathTracker tracker({&p});
    EXPECT_TRUE(tracker.reset().empty());
    EXPECT_TRUE(tracker.open(0, nullptr, "t").empty());
    auto child = [&](const char* name) {
        const bool matched = !tracker.open(1, nullptr, name).empty();
        const bool below = tracker.alive_below(1);
        std::size_t hits = below && !tracker.open(2, nullptr, "v").empty() ? 1 : 0;
        if (below) tracker.close(2);
        tracker.close(1);
        return std::pair<bool, std::size_t>{matched, hits};
    };
    EXPECT_EQ(child("r"), (std::pair<bool, std::size_t>{false, 0}));
    EXPECT_EQ(child("x"), (std::pair<bool, std::size_t>{false, 0}));  // not an r: not counted
    EXPECT_EQ(child("r"), (std::pair<bool, std::size_t>{false, 1}));
    EXPECT_EQ(child("r"), (std::pair<bool, std::size_t>{false, 0}));
    tracker.close(0);
    // A second root-level t counts its children afresh.
    EXPECT_TRUE(tracker.open(0, nullptr, "t").empty());
    EXPECT_EQ(child("r"), (std::pair<bool, std::size_t>{false, 0}));
    EXPECT_EQ(child("r"), (std::pair<bool, std::size_t>{false, 1}));
}

}  // namespace
