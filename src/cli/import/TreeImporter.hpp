#pragma once
// Imports the table from a document held as a tree.

#include "cli/import/ImportPlan.hpp"
#include "cli/import/RowSink.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::cli::import {

class TreeImporter {
public:
    // The plan must outlive the importer.
    explicit TreeImporter(const ImportPlan& plan) : plan_(plan) {}

    // Evaluates the row selector once, then walks each row's subtree once to find the values of the
    // columns under the row; only selectors the path matcher cannot follow are evaluated as XPath,
    // relative to the row. Stops when the sink wants no more rows.
    // Raises "TOLVEN:cli:SelectorNotEvaluable" (selector, reason) when a selector fails.
    void run(const io::xml::common::vcos::DocWrapper& document, RowSink& sink) const;

private:
    const ImportPlan& plan_;
};

}  // namespace tolven::cli::import
