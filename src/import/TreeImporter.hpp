#pragma once
// Imports the table from a document held as a tree.

#include "import/ImportPlan.hpp"
#include "import/RowSink.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::import {

class TreeImporter {
public:
    // The plan must outlive the importer.
    explicit TreeImporter(const ImportPlan& plan) : plan_(plan) {}

    // Evaluates the row selector once, then walks each row's subtree once to find the values of the
    // columns under the row (every node that matches, in document order); only selectors the path
    // matcher cannot follow are evaluated as XPath, relative to the row. Columns read from the whole
    // document (by index, or in the row each node lies in) are evaluated once. A value is the node's
    // string value. Stops when the sink wants no more rows.
    // Raises "TOLVEN:import:SelectorNotEvaluable" (selector, reason) when a selector fails.
    void run(const io::xml::common::vcos::DocWrapper& document, RowSink& sink) const;

private:
    const ImportPlan& plan_;
};

}  // namespace tolven::import
