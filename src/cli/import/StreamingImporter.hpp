#pragma once
// Imports the table in one pass of libxml2's streaming reader, without building the document tree.

#include "cli/import/ImportPlan.hpp"
#include "cli/import/InputDocument.hpp"
#include "cli/import/ProgressBar.hpp"
#include "cli/import/RowSink.hpp"

namespace tolven::cli::import {

class StreamingImporter {
public:
    // The plan must be streamable and outlive the importer.
    explicit StreamingImporter(const ImportPlan& plan) : plan_(plan) {}

    // Reads input from its start, matching rows and values by their paths. Memory holds only the rows
    // not yet written: the current one, plus, for columns aligned by index, those waiting for a value.
    // Stops reading as soon as the sink wants no more rows.
    // Raises "TOLVEN:io:xml:common:MalformedDocument" (source, line, column, message) and
    // "TOLVEN:io:xml:common:FileNotReadable".
    void run(InputDocument& input, RowSink& sink, ProgressBar& progress) const;

private:
    const ImportPlan& plan_;
};

}  // namespace tolven::cli::import
