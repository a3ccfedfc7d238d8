#pragma once
// Imports the table in one pass of libxml2's push parser, without building the document tree.

#include "import/ColumnSurvey.hpp"
#include "import/ImportPlan.hpp"
#include "import/InputDocument.hpp"
#include "import/Progress.hpp"
#include "import/RowSink.hpp"
#include "xml/parser/ParserSettings.hpp"
#include "xml/parser/SaxHandler.hpp"

namespace tolven::import {

class StreamingImporter {
public:
    // The plan must be streamable and outlive the importer.
    explicit StreamingImporter(const ImportPlan& plan, const io::xml::common::parser::ParserSettings& settings = {})
        : plan_(plan), settings_(settings) {}

    // Reads input from its start, matching rows and values by their paths. Memory holds only the rows
    // not yet written: the current one, plus, for columns aligned by index, those waiting for a value.
    // Stops reading as soon as the sink wants no more rows. progress, when given, is told how far it is.
    // Raises "TOLVEN:io:xml:common:MalformedDocument" (source, line, column, message),
    // "TOLVEN:io:xml:common:FileNotReadable" and "TOLVEN:io:xml:common:OutOfMemory".
    void run(InputDocument& input, RowSink& sink, Progress* progress = nullptr) const;

    // survey, which must outlive the importer, is shown every event of the pass too, so that one
    // parse both imports and surveys; what it returns is not heeded.
    void observe(ColumnSurvey* survey) noexcept { survey_ = survey; }
    // With parallel, rows are assembled, converted and written on a second thread while this one
    // parses: the sink, its writer and the survey are then called on that thread, one call at a time.
    void set_parallel(bool parallel) noexcept { parallel_ = parallel; }

private:
    const ImportPlan& plan_;
    io::xml::common::parser::ParserSettings settings_;
    ColumnSurvey* survey_ = nullptr;
    bool parallel_ = false;
};

}  // namespace tolven::import
