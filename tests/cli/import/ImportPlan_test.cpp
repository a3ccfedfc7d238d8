#include "cli/import/ImportPlan.hpp"

#include <gtest/gtest.h>

namespace {

using tolven::cli::DetectionResult;
using tolven::cli::import::ColumnSource;
using tolven::cli::import::make_import_plan;

DetectionResult result(const std::string& row, const std::vector<std::string>& selectors) {
    DetectionResult r;
    r.table_detected = true;
    r.row_selector = row;
    for (const auto& s : selectors) r.variables.push_back({"v", "string", s});
    return r;
}

TEST(ImportPlan, VariablesUnderTheRowAreReadRelativeToIt) {
    const auto plan = make_import_plan(result(
        "/a/b", {"/a/b/@id", "/a/b", "(/a/b)/c/d", "/a/bc/d", "/a/b[1]/c", "/a/b//c", "/x/y", "(/a/b)[2]/c"}));
    using K = ColumnSource::Kind;
    const std::vector<std::pair<K, std::string>> expected = {
        {K::RowRelative, "./@id"}, {K::RowRelative, "."},    {K::RowRelative, "./c/d"}, {K::Indexed, "/a/bc/d"},
        {K::Indexed, "/a/b[1]/c"}, {K::RowRelative, ".//c"}, {K::Indexed, "/x/y"},      {K::Indexed, "(/a/b)[2]/c"}};
    ASSERT_EQ(plan.columns.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(plan.columns[i].kind, expected[i].first) << plan.columns[i].selector;
        EXPECT_EQ(plan.columns[i].xpath, expected[i].second) << plan.columns[i].selector;
    }
    EXPECT_EQ(plan.fallback_reason(), "the selector '/a/b//c' uses the descendant axis ('//')");
}

TEST(ImportPlan, HintedRowSelectorsInParenthesesStillStream) {
    EXPECT_TRUE(make_import_plan(result("(/catalog)/book", {"(/catalog)/book/@id", "(/catalog)/book/author"}))
                    .streamable());
    const auto plan = make_import_plan(result("/catalog/book[2]", {"(/catalog/book[2])/title"}));
    EXPECT_TRUE(plan.streamable()) << plan.fallback_reason();
    EXPECT_EQ(plan.columns[0].xpath, "./title");

    const auto u = make_import_plan(result("/a/b|/a/c", {"(/a/b|/a/c)", "(/a/b|/a/c)/d"}));
    EXPECT_EQ(u.columns[0].kind, ColumnSource::Kind::RowRelative);
    EXPECT_EQ(u.columns[1].xpath, "./d");
    EXPECT_EQ(u.fallback_reason(), "the row selector '/a/b|/a/c' uses a union ('|')");
}

TEST(ImportPlan, WithoutRowsEveryVariableIsAlignedByIndex) {
    const auto plan = make_import_plan(result("", {"/s/e/date", "/s/e/amount"}));
    for (const auto& c : plan.columns) EXPECT_EQ(c.kind, ColumnSource::Kind::Indexed);
    EXPECT_TRUE(plan.streamable());
}

}  // namespace
