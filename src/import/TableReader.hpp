#pragma once
// Reading a table out of a document: detect it (on the whole tree, or on a sample of a large input
// that is then streamed), plan how its rows and columns are found, and import it into a writer.
// The command line, the public API and the tests all read tables through this one class.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/vxArray.hpp"
#include "detection/options/DetectionOptions.hpp"
#include "import/ColumnSurvey.hpp"
#include "import/DetectionResult.hpp"
#include "import/ImportPlan.hpp"
#include "import/InputDocument.hpp"
#include "import/Progress.hpp"
#include "import/RowSink.hpp"
#include "import/TableWriter.hpp"
#include "text/TypeAnalyzerOptions.hpp"
#include "xml/parser/ParserSettings.hpp"
#include "xml/vcos/DocWrapper.hpp"

namespace tolven::import {

struct ReadSettings {
    enum class Mode {
        Auto,    // stream inputs larger than sample_bytes, load the others as a tree
        Stream,  // stream whatever the size
        Tree,    // always load the whole document as a tree
    };
    // Larger inputs are streamed, and their table is detected on a sample of this size. A libxml2
    // tree takes about ten times the bytes of its text and several times as long to build as a
    // streaming pass over them, so this bounds the memory and the time of detection (some 45 MB and
    // 0.15 s at 2 MiB); thousands of rows are plenty to detect a table on.
    static constexpr std::uint64_t kDefaultSampleBytes = std::uint64_t{2} << 20;

    // Detects the table of the document (or sample) with the hints; run_detect when empty. The
    // command line puts its own choice of table here.
    std::function<DetectionResult(const std::shared_ptr<io::xml::common::vcos::DocWrapper>&, const vxArray*)> detect;

    Mode mode = Mode::Auto;
    std::uint64_t sample_bytes = kDefaultSampleBytes;
    std::optional<std::uint64_t> head;  // write at most this many rows
    // The user vouches for the document: the parser's limits are lifted (--huge).
    bool huge = false;

    bool strict = false;        // a value that does not convert to its column's type stops the import
    bool raw = false;           // every value as text, as it stands (columns given a type excepted)
    bool all_repeated = false;  // every value a row holds for a column, not only the first
    // (column, type name) and (column, date format in DateFormat's letters), by the columns' names as
    // written; a date format makes its column a datetime one.
    std::vector<std::pair<std::string, std::string>> types;
    std::vector<std::pair<std::string, std::string>> date_formats;

    // Only the table is wanted, not its rows (detect): a document without a table is no error, and
    // a streamed input is surveyed in the one pass it is read in.
    bool detect_only = false;
    // Told how far the pass that looks for late columns before a streaming import has come.
    Progress* survey_progress = nullptr;
    // Distinct element and attribute paths below the rows a survey keeps at most.
    std::size_t max_survey_paths = 4096;
    // The caller can take back what read() wrote (it passes a restart): late columns are then looked
    // for along the import, which is run again from the start only when one turns up, rather than in
    // a pass of their own before it.
    bool restartable = false;
    // A streaming import assembles, converts and writes its rows on a second thread while this one
    // parses; the writer is then called on that thread. Off, everything runs on the caller's thread.
    bool parallel = false;
};

class TableReader {
public:
    // Told of choices a user should know about (a fallback to the tree, a sample that cannot be cut).
    using Notes = std::function<void(std::string_view)>;

    // Detects the table of input with the hint structure hints, exactly as detect does. Raises the
    // errors of detection, "TOLVEN:io:xml:common:FileNotReadable", "MalformedDocument" and "OutOfMemory",
    // "TOLVEN:import:NoTableDetected" (source) when the document holds no table, and
    // "TOLVEN:import:InvalidColumnOption" (option, value, reason) for a type or date format given for a
    // column the table does not have, or that is not usable.
    TableReader(InputDocument& input, const vxArray* hints, const ReadSettings& settings, Notes notes = {});

    const DetectionResult& result() const noexcept { return result_; }
    // The columns as they are written: unique names, and the detected types or those given.
    const std::vector<Column>& columns() const noexcept { return columns_; }
    // True when the import streams the input rather than walking a tree of it.
    bool streaming() const noexcept { return streaming_; }

    // Imports the rows into writer (begin, the rows, end) and returns the sink with its counts.
    // progress, when given, follows a streaming import. Raises "TOLVEN:io:xml:common:MalformedDocument"
    // when the document breaks off mid-way, "TOLVEN:import:UnconvertibleValue" with strict, and the
    // writer's errors.
    // restart, when given, takes back what was written and gives the writer to write again with: an
    // import that meets a column first appearing past the sample then starts over with it.
    using Restart = std::function<TableWriter&()>;
    RowSink read(TableWriter& writer, Progress* progress = nullptr, const Restart& restart = {});
    // After read(): one line per column of the document that could not be written, because it first
    // appears past the sample of an input that can be read only once (standard input, a pipe).
    const std::vector<std::string>& warnings() const noexcept { return warnings_; }

private:
    void read_prefix();
    void parse_rest();
    void survey(const io::xml::detection::options::DetectionOptions& options);
    void take_survey(const ColumnSurvey& survey, bool revote);
    void warn_late(const ColumnSurvey& survey);
    std::string sample_words() const;
    std::shared_ptr<io::xml::common::vcos::DocWrapper> load_whole();
    void make_columns();
    void apply_column_settings();
    RowSink import(InputDocument& input, TableWriter& writer, Progress* progress);
    DetectionResult detect(const std::shared_ptr<io::xml::common::vcos::DocWrapper>& document,
                           const vxArray* hints) const;
    void note(std::string_view text) const {
        if (notes_) notes_(text);
    }

    InputDocument& input_;
    ReadSettings settings_;
    io::xml::common::parser::ParserSettings parser_;
    Notes notes_;
    io::text::typedetection::TypeAnalyzerOptions analyzer_;
    bool streaming_ = false;
    std::shared_ptr<io::xml::common::vcos::DocWrapper> document_;  // the whole document, for the tree path
    DetectionResult result_;
    std::optional<ImportPlan> plan_;
    std::vector<Column> columns_;
    std::string attribute_suffix_;
    // The survey that rides along the import, for an input that cannot be read twice or an output
    // that can be taken back.
    std::unique_ptr<ColumnSurvey> pending_survey_;
    std::vector<std::string> warnings_;
};

}  // namespace tolven::import
