#include "import/ImportPlan.hpp"

#include <gtest/gtest.h>

namespace {

using tolven::import::DetectionResult;
using tolven::import::make_import_plan;
using K = tolven::import::ColumnSource::Kind;

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

}  // namespace
