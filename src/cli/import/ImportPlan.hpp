#pragma once
// How the detected table is read: where its rows are and where each column's values come from.

#include <optional>
#include <string>
#include <vector>

#include "cli/DetectionResult.hpp"
#include "cli/import/PathMatcher.hpp"

namespace tolven::cli::import {

struct ColumnSource {
    // RowRelative: the first node the selector selects within each row (the selector lies under the
    // row selector). Indexed: the i-th node the selector selects in the whole document goes to row i.
    enum class Kind { RowRelative, Indexed };
    Kind kind = Kind::Indexed;
    std::string selector;  // as detected
    std::string xpath;     // what to evaluate: relative to the row ("./b", ".") or the selector itself
    std::optional<PathPattern> pattern;
    std::string reason;  // why there is no pattern
};

struct ImportPlan {
    std::string row_selector;  // empty: the rows are made by index
    std::optional<PathPattern> row_pattern;
    std::string row_reason;
    std::vector<ColumnSource> columns;
    NamespaceBindings namespaces;

    // True when every selector can be followed by the path matcher.
    bool streamable() const;
    // Why the document has to be read as a tree: the first selector that cannot be followed and the
    // reason; "" when streamable.
    std::string fallback_reason() const;
};

ImportPlan make_import_plan(const DetectionResult& result);

}  // namespace tolven::cli::import
