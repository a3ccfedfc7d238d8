#include "cli/ReadCommand.hpp"

#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>

#include "cli/OptionChecks.hpp"
#include "cli/ProgressBar.hpp"
#include "cli/TableChoice.hpp"
#include "cli/output.hpp"
#include "cli/summary.hpp"
#include "import/AtomicOutputFile.hpp"
#include "import/CsvWriter.hpp"
#include "import/ImportReport.hpp"
#include "import/InputDocument.hpp"
#include "import/JsonArrayWriter.hpp"
#include "import/JsonLinesWriter.hpp"
#include "import/OutputStream.hpp"
#include "import/SqliteWriter.hpp"
#include "import/TableReader.hpp"
#include "import/ValueConverter.hpp"
#include "text/typeconversion/DateFormat.hpp"

namespace tolven::cli {

namespace {

// Splits COL=VALUE at its first "=" (names hold none).
std::pair<std::string, std::string> column_setting(const std::string& text) {
    const auto eq = text.find('=');
    return {text.substr(0, eq), text.substr(eq + 1)};
}

std::string check_column_setting(const std::string& text) {
    const auto eq = text.find('=');
    if (eq == std::string::npos || eq == 0 || eq + 1 == text.size()) return "expected COLUMN=VALUE";
    return {};
}

std::unique_ptr<import::TableWriter> make_writer(const std::string& format, bool crlf, import::OutputStream& out) {
    const std::string_view line_end = crlf ? "\r\n" : "\n";
    if (format == "tsv") return std::make_unique<import::CsvWriter>(out, '\t', line_end);
    if (format == "jsonl") return std::make_unique<import::JsonLinesWriter>(out);
    if (format == "json") return std::make_unique<import::JsonArrayWriter>(out);
    return std::make_unique<import::CsvWriter>(out, ',', line_end);
}

}  // namespace

ReadCommand::ReadCommand(CLI::App& app)
    : command_(app.add_subcommand("read", "Find the table in an XML document and import it as CSV, TSV, JSON or into SQLite")) {
    command_->add_option("file", input_, "The XML document; - or none reads standard input")->type_name("FILE");
    command_->add_option("--format", format_, "Output format")
        ->check(CLI::IsMember({"csv", "tsv", "jsonl", "json", "sqlite"}))
        ->capture_default_str();
    auto* crlf = command_->add_flag("--crlf", crlf_, "End CSV and TSV lines with CR LF, as RFC 4180 has it (default: LF)");
    command_->add_option("--output,-o", output_, "Write to FILE (complete or not at all) instead of standard output")
        ->type_name("FILE");
    command_->add_option("--table-name", table_name_,
                         "sqlite: the table to write (default: the input file's name without extension)");
    command_->add_flag("--replace", replace_, "sqlite: replace a table of that name instead of failing");
    command_->add_option("--head", head_, "Write only the first N rows, and stop reading once they are found")
        ->check(Count())
        ->type_name("N");
    add_sample_options(*command_, sample_, "Detect on a sample and import in one streaming pass, whatever the size");
    command_->add_option("--threads", threads_,
                         "Threads of a streaming import: 2 parses on one while the rows are assembled, converted "
                         "and written on the other; 1 does all on one")
        ->check(CLI::Range(1, 2))
        ->default_val(2)
        ->type_name("N");
    command_->add_flag("--huge", huge_,
                       "Lift the parser's limits (nesting deeper than 256 levels, text nodes over 10 MB, "
                       "entity expansion) for a document you trust");
    auto* progress = command_->add_flag("--progress", progress_, "Show a progress bar on standard error");
    auto* no_progress = command_->add_flag(
        "--no-progress", no_progress_,
        "Never show the progress bar (by default it shows when standard error is a terminal and the rows "
        "go elsewhere)");
    progress->excludes(no_progress);
    auto* values = "Values";
    command_->add_option("--type", types_,
                         "COL=TYPE: import column COL as TYPE (string, double, single, int8 ... int64, uint8 ... "
                         "uint64, datetime, duration) whatever detection found (repeatable)")
        ->check([](const std::string& v) {
            if (auto bad = check_column_setting(v); !bad.empty()) return bad;
            const auto type = column_setting(v).second;
            return import::is_known_type(type) ? std::string() : "'" + type + "' is not a type (use one of " +
                                                                     import::kKnownTypes + ")";
        })
        ->group(values);
    command_->add_option("--date-format", date_formats_,
                         "COL=FMT: read column COL as dates in the strftime-like format FMT, e.g. %d/%m/%Y "
                         "(repeatable)")
        ->check([](const std::string& v) {
            if (auto bad = check_column_setting(v); !bad.empty()) return bad;
            std::string reason;
            io::text::typeconversion::DateFormat::compile(column_setting(v).second, reason);
            return reason;
        })
        ->group(values);
    command_->add_flag("--raw", raw_, "Write every value as text, as it stands in the document")->group(values);
    command_->add_flag("--strict", strict_,
                       "Stop with an error (exit 1) at the first value that does not convert to its column's type")
        ->group(values);
    command_->add_option("--repeated", repeated_,
                         "A row holding several values for a column: write the first (and warn), or all of them "
                         "(joined by '; ' in CSV/TSV, an array in JSON)")
        ->check(CLI::IsMember({"first", "all"}))
        ->capture_default_str()
        ->group(values);
    command_->add_flag("--quiet,-q", quiet_, "No notes and no summary (warnings and errors are still shown)");
    summary_option_ = command_->add_option("--summary", summary_,
                                           "The summary on standard error: text for people, json (one object, "
                                           "with the notes in it) for scripts, or none")
                          ->check(CLI::IsMember({"text", "json", "none"}))
                          ->capture_default_str();
    add_hint_options(*command_, hints_);
    command_->parse_complete_callback([this, crlf] {
        if (crlf->count() > 0 && format_ != "csv" && format_ != "tsv")
            throw CLI::ValidationError("--crlf", "applies to --format csv and tsv only");
    });
}

ExitCode ReadCommand::run() const {
    const bool sqlite = format_ == "sqlite";
    if (sqlite ? output_.empty() || output_ == "-" : !table_name_.empty() || replace_) {
        std::cerr << "tolven-xml: error: " << (sqlite ? "--format sqlite needs --output FILE.db"
                                                      : "--table-name and --replace go with --format sqlite")
                  << '\n';
        return ExitCode::Usage;
    }
    // An explicit --summary wins over --quiet.
    const std::string summary = quiet_ && summary_option_->count() == 0 ? "none" : summary_;
    const bool json = summary == "json";
    std::vector<std::string> notes;
    auto note = [&](std::string_view text) {
        if (json) notes.emplace_back(text);
        else if (!quiet_) std::cerr << "tolven-xml: note: " << text << '\n';
    };
    TableChoice choice(hints_, 0, std::cerr, note);
    try {
        const vxArrayPtr hints = build_hint_struct(hints_);
        import::ReadSettings settings;
        settings.mode = sample_.mode();
        settings.sample_bytes = sample_.sample_bytes;
        settings.head = head_;
        settings.huge = huge_;
        settings.strict = strict_;
        settings.raw = raw_;
        settings.all_repeated = repeated_ == "all";
        for (const auto& t : types_) settings.types.push_back(column_setting(t));
        for (const auto& f : date_formats_) settings.date_formats.push_back(column_setting(f));
        settings.detect = [&choice](const auto& document, const vxArray* hints) { return choice.detect(document, hints); };
        import::InputDocument input(input_);

        std::optional<import::AtomicOutputFile> file;
        if (!sqlite && !output_.empty() && output_ != "-") file.emplace(output_);
        import::OutputStream out(file ? file->fd() : STDOUT_FILENO, file ? output_ : "<stdout>");

        // Rows written to the same terminal would be torn by the redrawn line. The bar follows the
        // streaming passes (the look for late columns, then the import); a tree is never drawn for.
        const bool rows_on_terminal = !file && !sqlite && ::isatty(STDOUT_FILENO) == 1;
        const bool sized = !input.is_stdin() && input.size().has_value();
        const bool show = !no_progress_ && sized && (progress_ || (::isatty(STDERR_FILENO) == 1 && !rows_on_terminal));
        ProgressBar bar(show, input.size().value_or(0));
        settings.survey_progress = &bar;
        // A file (given with -o, or standard output sent to one) can be cut back and written again,
        // so a late column costs a second import only when there is one.
        settings.restartable = !sqlite && out.rewindable();
        settings.parallel = threads_ > 1;
        import::TableReader reader(input, hints.get(), settings, note);
        choice.release();
        std::unique_ptr<import::TableWriter> writer;
        if (sqlite) {
            writer = std::make_unique<import::SqliteWriter>(
                output_, table_name_.empty() ? import::default_table_name(input_) : table_name_, replace_);
        } else {
            writer = make_writer(format_, crlf_, out);
        }
        const auto restart = [&]() -> import::TableWriter& {
            out.rewind();
            writer = make_writer(format_, crlf_, out);
            return *writer;
        };
        const import::RowSink sink = reader.read(*writer, reader.streaming() ? &bar : nullptr,
                                                 settings.restartable ? import::TableReader::Restart(restart)
                                                                      : import::TableReader::Restart());
        bar.finish();
        out.flush();
        if (file) file->commit();
        for (const auto& line : import::import_notes(sink)) note(line);
        std::vector<std::string> warnings = import::import_warnings(sink);
        warnings.insert(warnings.end(), reader.warnings().begin(), reader.warnings().end());
        if (!json)
            for (const auto& line : warnings) std::cerr << "tolven-xml: warning: " << line << '\n';
        const ReadReport report{sink, reader.columns(), reader.result().variables, std::move(notes),
                                std::move(warnings)};
        if (json) write_json_summary(std::cerr, report);
        else if (summary == "text") write_text_summary(std::cerr, report);
        return ExitCode::Done;
    } catch (const foundation::core::except::IMsgIDException& error) {
        const std::string message = choice.message(error);
        if (json) write_json_error(std::cerr, error, message);
        else write_text_error(std::cerr, error, message);
        return exit_code_for(error);
    }
}

}  // namespace tolven::cli
