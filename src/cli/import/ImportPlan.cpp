#include "cli/import/ImportPlan.hpp"

#include <utility>
#include <variant>

namespace tolven::cli::import {

namespace {

void compile_into(std::string_view selector, bool relative, const NamespaceBindings& namespaces,
                  std::optional<PathPattern>& pattern, std::string& reason) {
    auto compiled = compile_path(selector, relative, namespaces);
    if (auto* p = std::get_if<PathPattern>(&compiled)) pattern = std::move(*p);
    else reason = std::move(std::get<std::string>(compiled));
}

}  // namespace

bool ImportPlan::streamable() const { return fallback_reason().empty(); }

std::string ImportPlan::fallback_reason() const {
    if (!row_selector.empty() && !row_pattern) return "the row selector '" + row_selector + "' " + row_reason;
    for (const auto& c : columns)
        if (!c.pattern) return "the selector '" + c.selector + "' " + c.reason;
    return {};
}

ImportPlan make_import_plan(const DetectionResult& result) {
    ImportPlan plan;
    plan.namespaces = result.namespaces;
    plan.row_selector = result.row_selector;
    if (!plan.row_selector.empty())
        compile_into(plan.row_selector, false, plan.namespaces, plan.row_pattern, plan.row_reason);

    // Detection writes a variable's selector as the row selector followed by the variable's own
    // steps, so the text itself says whether the variable lies under the row.
    const std::string& row = plan.row_selector;
    for (const auto& v : result.variables) {
        ColumnSource c;
        c.selector = v.selector;
        if (!row.empty() && v.selector == row) {
            c.kind = ColumnSource::Kind::RowRelative;
            c.xpath = ".";
        } else if (!row.empty() && v.selector.size() > row.size() + 1 && v.selector.compare(0, row.size(), row) == 0 &&
                   v.selector[row.size()] == '/') {
            c.kind = ColumnSource::Kind::RowRelative;
            c.xpath = "./" + v.selector.substr(row.size() + 1);
        } else {
            c.kind = ColumnSource::Kind::Indexed;
            c.xpath = v.selector;
        }
        compile_into(c.xpath, c.kind == ColumnSource::Kind::RowRelative, plan.namespaces, c.pattern, c.reason);
        plan.columns.push_back(std::move(c));
    }
    return plan;
}

}  // namespace tolven::cli::import
