#include "import/ImportPlan.hpp"

#include <utility>
#include <variant>

#include "import/RowAncestor.hpp"

namespace tolven::import {

namespace {

void compile_into(std::string_view selector, bool relative, const NamespaceBindings& namespaces,
                  std::optional<PathPattern>& pattern, std::string& reason) {
    auto compiled = compile_path(selector, relative, namespaces);
    if (auto* p = std::get_if<PathPattern>(&compiled)) pattern = std::move(*p);
    else reason = std::move(std::get<std::string>(compiled));
}

// What follows row, or "(" row ")", at the start of selector: "" for the row itself, else "/" and
// the steps below it; none when selector does not start with the row.
std::optional<std::string_view> steps_below(std::string_view selector, std::string_view row) {
    if (row.empty()) return std::nullopt;
    std::string_view rest;
    if (selector.substr(0, row.size()) == row) {
        rest = selector.substr(row.size());
    } else if (selector.size() > row.size() + 1 && selector.front() == '(' &&
               selector.substr(1, row.size()) == row && selector[row.size() + 1] == ')') {
        rest = selector.substr(row.size() + 2);
    } else {
        return std::nullopt;
    }
    // Anything but steps (a predicate, a union) would change what the row part selects.
    if (rest.empty() || (rest.size() > 1 && rest[0] == '/')) return rest;
    return std::nullopt;
}

}  // namespace

bool ImportPlan::streamable() const { return fallback_reason().empty(); }

std::string ImportPlan::fallback_reason() const {
    if (!row_selector.empty() && !row_pattern) return "the row selector '" + row_selector + "' " + row_reason;
    for (const auto& c : columns)
        if (!c.pattern) return "the selector '" + c.selector + "' " + c.reason;
    return {};
}

ImportPlan make_import_plan(const DetectionResult& result, const io::xml::common::vcos::DocWrapper* document) {
    ImportPlan plan;
    plan.namespaces = result.namespaces;
    plan.row_selector = result.row_selector;
    if (plan.row_selector.empty() && document != nullptr && !result.variables.empty()) {
        std::vector<std::string> selectors;
        for (const auto& v : result.variables) selectors.push_back(v.selector);
        if (auto rows = find_row_ancestor(*document, selectors, plan.namespaces)) {
            plan.row_selector = std::move(rows->selector);
            plan.row_pattern = std::move(rows->pattern);
            plan.rows_from_ancestor = true;
            for (const auto& v : result.variables) {
                ColumnSource c;
                c.kind = ColumnSource::Kind::InRow;
                c.selector = c.xpath = v.selector;
                compile_into(c.xpath, false, plan.namespaces, c.pattern, c.reason);
                plan.columns.push_back(std::move(c));
            }
            return plan;
        }
    }
    if (!plan.row_selector.empty())
        compile_into(plan.row_selector, false, plan.namespaces, plan.row_pattern, plan.row_reason);

    // Detection writes a variable's selector as the row selector, in parentheses when the row
    // selector came from a hint, followed by the variable's own steps; so the text itself says
    // whether the variable lies under the row.
    for (const auto& v : result.variables) {
        ColumnSource c;
        c.selector = v.selector;
        if (const auto steps = steps_below(v.selector, plan.row_selector)) {
            c.kind = ColumnSource::Kind::RowRelative;
            c.xpath = steps->empty() ? "." : "." + std::string(*steps);
        } else {
            c.kind = ColumnSource::Kind::Indexed;
            c.xpath = v.selector;
        }
        compile_into(c.xpath, c.kind == ColumnSource::Kind::RowRelative, plan.namespaces, c.pattern, c.reason);
        plan.columns.push_back(std::move(c));
    }
    return plan;
}

}  // namespace tolven::import
