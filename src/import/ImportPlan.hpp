#pragma once
// How the detected table is read: where its rows are and where each column's values come from.

#include <optional>
#include <string>
#include <vector>

#include "import/DetectionResult.hpp"
#include "import/PathMatcher.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::import {

struct ColumnSource {
    // RowRelative: the nodes the selector selects within each row (the selector lies under the row
    // selector). Indexed: the i-th node the selector selects in the whole document goes to row i.
    // InRow: the nodes the selector selects in the whole document go to the row they lie in (rows
    // found by find_row_ancestor); nodes outside every row are not read.
    enum class Kind { RowRelative, Indexed, InRow };
    Kind kind = Kind::Indexed;
    std::string selector;  // as detected
    std::string xpath;     // what to evaluate: relative to the row ("./b", ".") or the selector itself
    std::optional<PathPattern> pattern;
    std::string reason;  // why there is no pattern
};

struct ImportPlan {
    std::string row_selector;  // empty: the rows are made by index
    bool rows_from_ancestor = false;  // the rows are the variables' repeating ancestor
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

// document, when given, is the one detection ran on: a table without a row selector then takes its
// rows from the variables' repeating ancestor when they have one (see find_row_ancestor).
ImportPlan make_import_plan(const DetectionResult& result,
                            const io::xml::common::vcos::DocWrapper* document = nullptr);

}  // namespace tolven::import
