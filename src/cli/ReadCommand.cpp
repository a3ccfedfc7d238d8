#include "cli/ReadCommand.hpp"

#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "cli/DetectionResult.hpp"
#include "cli/errors.hpp"
#include "cli/import/AtomicOutputFile.hpp"
#include "cli/import/ColumnNames.hpp"
#include "cli/import/CsvWriter.hpp"
#include "cli/import/ImportPlan.hpp"
#include "cli/import/InputDocument.hpp"
#include "cli/import/JsonArrayWriter.hpp"
#include "cli/import/JsonLinesWriter.hpp"
#include "cli/import/OutputStream.hpp"
#include "cli/import/ProgressBar.hpp"
#include "cli/import/RowSink.hpp"
#include "cli/import/SampleExtractor.hpp"
#include "cli/import/StreamingImporter.hpp"
#include "cli/import/TreeImporter.hpp"
#include "cli/output.hpp"
#include "detection/options/make_detection_options.hpp"
#include "host/utf.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::cli {

namespace {

namespace vcos = io::xml::common::vcos;

// Larger inputs are streamed, and their table is detected on a sample of this size. A libxml2
// tree takes about ten times the bytes of its text and several times as long to build as a
// streaming pass over them, so this bounds the memory and the time of detection (some 45 MB and
// 0.15 s at 2 MiB); thousands of rows are plenty to detect a table on.
constexpr std::uint64_t kDefaultSampleBytes = std::uint64_t{2} << 20;

void note(const std::string& text) { std::cerr << "tolven-xml: note: " << text << '\n'; }

std::unique_ptr<import::TableWriter> make_writer(const std::string& format, import::OutputStream& out) {
    if (format == "tsv") return std::make_unique<import::CsvWriter>(out, '\t');
    if (format == "jsonl") return std::make_unique<import::JsonLinesWriter>(out);
    if (format == "json") return std::make_unique<import::JsonArrayWriter>(out);
    return std::make_unique<import::CsvWriter>(out, ',');
}

// The whole input as a tree; the prefix already read is not read twice.
std::shared_ptr<vcos::DocWrapper> load_whole(import::InputDocument& input, const std::string& path) {
    if (!input.is_stdin() && input.size()) return vcos::load_document(path);
    return vcos::load_document_from_memory(input.read_all(), input.source());
}

}  // namespace

ReadCommand::ReadCommand(CLI::App& app)
    : command_(app.add_subcommand("read", "Find the table in an XML document and import it as CSV, TSV or JSON")),
      sample_bytes_(kDefaultSampleBytes) {
    command_->add_option("file", input_, "The XML document; - reads standard input")->capture_default_str();
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"csv", "tsv", "jsonl", "json"}))
        ->capture_default_str();
    command_->add_option("--output,-o", output_,
                         "Write to FILE (complete or not at all) instead of standard output");
    command_->add_option("--head", head_, "Write only the first N rows, and stop reading once they are found")
        ->check(CLI::NonNegativeNumber);
    auto* stream = command_->add_flag("--stream", stream_,
                                      "Detect on a sample and import in one streaming pass, whatever the size");
    auto* no_stream =
        command_->add_flag("--no-stream", no_stream_, "Always load the whole document as a tree");
    stream->excludes(no_stream);
    command_->add_option("--sample-bytes", sample_bytes_,
                         "Inputs larger than this are streamed, and detected on their first N bytes "
                         "(units such as 64MiB allowed)")
        ->transform(CLI::AsSizeValue(false))
        ->capture_default_str();
    auto* progress = command_->add_flag("--progress", progress_, "Show a progress bar on standard error");
    auto* no_progress = command_->add_flag(
        "--no-progress", no_progress_,
        "Never show the progress bar (by default it shows when standard error is a terminal and the rows "
        "go elsewhere)");
    progress->excludes(no_progress);
    add_hint_options(*command_, hints_);
}

ExitCode ReadCommand::run() const {
    try {
        const vxArrayPtr hints = build_hint_struct(hints_);
        const auto options = io::xml::detection::options::make_detection_options(hints.get());
        const auto analyzer = import::make_analyzer_options(options);
        import::InputDocument input(input_);

        // Files are chosen by their size; other inputs by how much of them fits the sample.
        const bool sized = !input.is_stdin() && input.size().has_value();
        if (!sized) input.read_prefix(sample_bytes_);
        bool streaming = stream_ || (!no_stream_ && (sized ? *input.size() > sample_bytes_ : !input.complete()));

        std::optional<import::AtomicOutputFile> file;
        if (!output_.empty() && output_ != "-") file.emplace(output_);
        import::OutputStream out(file ? file->fd() : STDOUT_FILENO, file ? output_ : "<stdout>");

        std::shared_ptr<vcos::DocWrapper> document;  // the whole document, for the tree path
        DetectionResult result;
        if (streaming) {
            if (sized) input.read_prefix(sample_bytes_);
            std::optional<std::string> sample;
            if (input.complete()) sample = std::string(input.prefix());
            else sample = import::close_sample(input.prefix());
            if (sample) {
                result = run_detect(vcos::load_document_from_memory(*sample, input.source()), hints.get());
            } else {
                note("no sample can be cut from the start of the document (its encoding is not ASCII-compatible, "
                     "or the root element does not start within --sample-bytes); it is read whole as a tree");
                streaming = false;
            }
        }
        if (!streaming) {
            document = load_whole(input, input_);
            result = run_detect(document, hints.get());
        }
        if (!result.table_detected) vxErrMsgId(TOLVEN::cli::NoTableDetected(input.source()));

        const import::ImportPlan plan = import::make_import_plan(result);
        if (streaming && !plan.streamable()) {
            note("the whole document is read into memory as a tree, since " + plan.fallback_reason());
            document = load_whole(input, input_);
            streaming = false;
        }

        std::vector<std::string> names;
        for (const auto& v : result.variables) names.push_back(v.name);
        names = import::make_column_names(names, fl::i18n::ustring_to_utf8(options.AttributeSuffix));
        std::vector<import::Column> columns;
        for (std::size_t i = 0; i < names.size(); ++i) columns.push_back({names[i], result.variables[i].type});

        const auto writer = make_writer(format_, out);
        import::RowSink sink(std::move(columns), analyzer, *writer, head_);
        sink.begin();
        if (streaming) {
            // Rows written to the same terminal would be torn by the redrawn line.
            const bool rows_on_terminal = !file && ::isatty(STDOUT_FILENO) == 1;
            const bool show =
                !no_progress_ && sized && (progress_ || (::isatty(STDERR_FILENO) == 1 && !rows_on_terminal));
            import::ProgressBar bar(show, input.size().value_or(0));
            import::StreamingImporter(plan).run(input, sink, bar);
        } else {
            import::TreeImporter(plan).run(*document, sink);
        }
        sink.end();
        out.flush();
        if (file) file->commit();
        sink.write_summary(std::cerr);
        return ExitCode::Done;
    } catch (const foundation::core::except::IMsgIDException& error) {
        write_text_error(std::cerr, error);
        return exit_code_for(error);
    }
}

}  // namespace tolven::cli
