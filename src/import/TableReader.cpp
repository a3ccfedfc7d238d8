#include "import/TableReader.hpp"

#include <malloc.h>

#include <algorithm>
#include <vector>

#include "detection/options/make_detection_options.hpp"
#include "host/except/Exception.hpp"
#include "host/utf.hpp"
#include "import/ColumnNames.hpp"
#include "import/SampleExtractor.hpp"
#include "import/StreamingImporter.hpp"
#include "import/TreeImporter.hpp"
#include "import/ValueConverter.hpp"
#include "import/errors.hpp"
#include "xml/errors.hpp"
#include "xml/parser/PushParser.hpp"
#include "text/typeconversion/DateFormat.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::import {

namespace vcos = io::xml::common::vcos;

namespace {
// The first bytes of an input are checked to start like a document before more are read, so that
// endless input that is not XML (junk, zero bytes) is refused at once.
constexpr std::size_t kFirstBytes = std::size_t{64} << 10;
}  // namespace

TableReader::TableReader(InputDocument& input, const vxArray* hints, const ReadSettings& settings, Notes notes)
    : input_(input), settings_(settings), parser_{settings.huge}, notes_(std::move(notes)) {
    const auto options = io::xml::detection::options::make_detection_options(hints);
    analyzer_ = make_analyzer_options(options);

    // Plain files are chosen by their size; other inputs (compressed ones too, which may expand
    // a hundredfold) by how much of them fits the sample.
    const bool sized = input_.sized();
    if (!sized) read_prefix();
    using Mode = ReadSettings::Mode;
    streaming_ = settings_.mode == Mode::Stream ||
                 (settings_.mode == Mode::Auto &&
                  (sized ? *input_.size() > settings_.sample_bytes : !input_.complete()));

    // The document detection ran on: the whole one, or the sample.
    std::shared_ptr<vcos::DocWrapper> detected;
    if (streaming_) {
        if (sized) read_prefix();
        std::optional<std::string> sample;
        if (input_.complete()) sample = std::string(input_.prefix());
        else sample = close_sample(input_.prefix());
        if (sample) {
            try {
                detected = vcos::load_document_from_memory(*sample, input_.source(), parser_);
            } catch (const foundation::core::except::IMsgIDException&) {
                // A fault within the sample is reported as a parse of the whole input meets it first,
                // which may be a fault in reading the input (libxml2 looks ahead before it reports).
                if (!input_.complete()) parse_rest();
                throw;
            }
            result_ = detect(detected, hints);
        } else {
            note("no sample can be cut from the start of the document (its encoding is not ASCII-compatible, "
                 "or the root element does not start within --sample-bytes); it is read whole as a tree");
            streaming_ = false;
        }
    }
    if (!streaming_) result_ = detect(detected = load_whole(), hints);
    if (!result_.table_detected) {
        // The rest of a sampled input is parsed first: a fault past the sample is what the user must
        // hear of, as the whole tree would have reported it.
        if (streaming_ && !input_.complete()) parse_rest();
        if (settings_.detect_only) return;
        vxErrMsgId(TOLVEN::import::NoTableDetected(input_.source()));
    }

    plan_.emplace(make_import_plan(result_, detected.get()));
    if (streaming_ && !plan_->streamable()) {
        note("the whole document is read into memory as a tree, since " + plan_->fallback_reason());
        // Detected again on the whole, now that it is there: the table is then the tree's own.
        detected.reset();
        result_ = detect(detected = load_whole(), hints);
        streaming_ = false;
        if (!result_.table_detected) {
            if (settings_.detect_only) return;
            vxErrMsgId(TOLVEN::import::NoTableDetected(input_.source()));
        }
        plan_.emplace(make_import_plan(result_, detected.get()));
    }
    detected.reset();
    // Variable hints whose nodes share no repeating element: rows can only be made by index.
    if (!settings_.detect_only && plan_->row_selector.empty() && result_.table_selector.empty() &&
        result_.variables.size() > 1)
        note("the variables' nodes share no repeating element to make rows of, so row i holds the i-th node of "
             "each selector; a variable missing from one place shifts its later values");
    if (streaming_) survey(options);
    attribute_suffix_ = fl::i18n::ustring_to_utf8(options.AttributeSuffix);
    make_columns();
}

void TableReader::make_columns() {
    std::vector<std::string> names;
    for (const auto& v : result_.variables) names.push_back(v.name);
    names = make_column_names(names, attribute_suffix_);
    columns_.clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        Column& c = columns_.emplace_back();
        c.name = names[i];
        c.type = result_.variables[i].type;
    }
    apply_column_settings();
}

void TableReader::apply_column_settings() {
    if (settings_.raw)
        for (auto& c : columns_) c.type = "string";
    const auto column = [this](const char* option, const std::string& name, const std::string& value) -> Column& {
        for (auto& c : columns_)
            if (c.name == name) return c;
        std::string known;
        for (const auto& c : columns_) known += (known.empty() ? "" : ", ") + c.name;
        vxErrMsgId(TOLVEN::import::InvalidColumnOption(
            option, name + "=" + value, "the table has no column '" + name + "' (its columns: " + known + ")"));
    };
    for (const auto& [name, type] : settings_.types) {
        if (!is_known_type(type))
            vxErrMsgId(TOLVEN::import::InvalidColumnOption(
                "--type", name + "=" + type, "'" + type + "' is not a type (use one of " + kKnownTypes + ")"));
        Column& c = column("--type", name, type);
        c.type = type;
        c.type_given = true;
    }
    for (const auto& [name, format] : settings_.date_formats) {
        std::string reason;
        if (!io::text::typeconversion::DateFormat::compile(format, reason))
            vxErrMsgId(TOLVEN::import::InvalidColumnOption("--date-format", name + "=" + format, reason));
        Column& c = column("--date-format", name, format);
        c.type = "datetime";
        c.type_given = true;
        c.date_format = format;
    }
}

std::string TableReader::sample_words() const {
    const std::uint64_t bytes = settings_.sample_bytes;
    const std::string size = bytes % (1 << 20) == 0   ? std::to_string(bytes >> 20) + " MiB"
                             : bytes % (1 << 10) == 0 ? std::to_string(bytes >> 10) + " KiB"
                                                      : std::to_string(bytes) + " bytes";
    return "the sample (the first " + size + ") the table was detected on";
}

// Detection saw the sample only: a pass over the whole input finds the columns that first appear
// past it. It runs before the import when the input can be read again, and along with it otherwise.
void TableReader::survey(const io::xml::detection::options::DetectionOptions& options) {
    // A sample that holds the whole input was all there is to see.
    if (input_.complete()) return;
    const bool variable_hints = !options.VariableSelectors.empty() || !options.VariableNodeNames.empty();
    const std::string reason = ColumnSurvey::unsupported(result_, *plan_, variable_hints);
    if (!reason.empty()) {
        // Variables the hints chose are all there is to the table.
        if (!variable_hints)
            note("columns that first appear past " + sample_words() + " are not looked for, since " + reason +
                 "; give --no-stream to detect on the whole document");
        return;
    }
    SurveySettings survey_settings;
    survey_settings.import_attributes = options.ImportAttributes;
    survey_settings.detect_namespaces = options.DetectNamespaces;
    survey_settings.analyzer = analyzer_;
    survey_settings.max_paths = settings_.max_survey_paths;
    if (settings_.detect_only) {
        ColumnSurvey survey(result_, *plan_, survey_settings);
        survey.run(input_, parser_, nullptr, settings_.parallel);
        take_survey(survey, true);
    } else if (settings_.restartable && input_.reopenable()) {
        // Most documents have no late column: the one import pass looks for them, and is run again
        // only when it finds one.
        pending_survey_ = std::make_unique<ColumnSurvey>(result_, *plan_, survey_settings);
    } else if (auto again = input_.reopen()) {
        // With --head the columns are those of the rows written.
        survey_settings.max_rows = settings_.head;
        ColumnSurvey survey(result_, *plan_, survey_settings);
        survey.run(*again, parser_, settings_.survey_progress, settings_.parallel);
        if (settings_.survey_progress) settings_.survey_progress->restart();
        take_survey(survey, !settings_.head);
    } else {
        pending_survey_ = std::make_unique<ColumnSurvey>(result_, *plan_, survey_settings);
    }
}

void TableReader::take_survey(const ColumnSurvey& survey, bool revote) {
    // The types of the columns detected on the sample are voted again from the first values of the
    // whole document, as detection on the whole tree votes them.
    if (revote) survey.revote(result_.variables);
    if (survey.overflowed())
        note("more than " + std::to_string(survey.max_paths()) +
             " distinct element and attribute paths lie below the rows; columns past those are not looked for");
    // Namespaces declared past the sample are registered, as on the whole tree.
    auto namespaces = survey.late_namespaces();
    const std::vector<LateColumn> late = survey.late_columns();
    if (late.empty() && namespaces.empty()) return;
    for (auto& pair : namespaces) result_.namespaces.push_back(std::move(pair));
    plan_.emplace(make_import_plan(result_));
    if (late.empty()) return;
    std::string names;
    for (std::size_t i = 0; i < late.size(); ++i) {
        result_.variables.push_back(late[i].variable);
        if (i < 5) names += (i ? ", " : "") + late[i].variable.name + " (row " + std::to_string(late[i].first_row) + ")";
    }
    if (late.size() > 5) names += ", ...";
    note(std::to_string(late.size()) + (late.size() == 1 ? " column first appears" : " columns first appear") +
         " past " + sample_words() + ": " + names);
    plan_.emplace(make_import_plan(result_));
    if (plan_->streamable()) return;
    // The stream cannot follow a late column's selector: it is reported, not imported.
    const std::string reason = plan_->fallback_reason();
    result_.variables.resize(result_.variables.size() - late.size());
    plan_.emplace(make_import_plan(result_));
    for (const LateColumn& c : late)
        warnings_.push_back("column '" + c.variable.name + "' (" + c.variable.selector + ") first appears in row " +
                            std::to_string(c.first_row) + ", past " + sample_words() +
                            ", and is not in the output, since " + reason + "; give --no-stream to import it");
}

void TableReader::warn_late(const ColumnSurvey& survey) {
    for (const LateColumn& c : survey.late_columns())
        warnings_.push_back("column '" + c.variable.name + "' (" + c.variable.selector + ") first appears in row " +
                            std::to_string(c.first_row) + ", past " + sample_words() +
                            ", and is not in the output: " + input_.source() +
                            " can be read only once; save the document to a file and read the file to import it");
    if (survey.overflowed())
        warnings_.push_back("more than " + std::to_string(survey.max_paths()) +
                            " distinct element and attribute paths lie below the rows; columns past those were not "
                            "looked for");
}

namespace {
// Takes every event and keeps nothing: a parse only to find the document's first fault.
class NoHandler final : public io::xml::common::parser::SaxHandler {
public:
    bool start_element(const io::xml::common::parser::ElementEvent&) override { return true; }
    bool end_element() override { return true; }
    bool text(std::string_view) override { return true; }
};
}  // namespace

void TableReader::parse_rest() {
    NoHandler handler;
    io::xml::common::parser::PushParser push(input_.source(), parser_, handler);
    std::vector<char> buffer(InputDocument::kChunkBytes);
    // As far as a tree of the input would be read, not further: a stream may never end, and a
    // huge file is not read through only to say that its sample holds no table.
    const std::uint64_t limit = std::max(settings_.sample_bytes, vcos::kMaxUnsizedTreeBytes);
    for (std::size_t n; (n = input_.read(buffer.data(), buffer.size())) > 0;) {
        push.feed(buffer.data(), n);
        if (input_.consumed() > limit) return;
    }
    push.finish();
}

void TableReader::read_prefix() {
    input_.read_prefix(static_cast<std::size_t>(std::min<std::uint64_t>(settings_.sample_bytes, kFirstBytes)));
    io::xml::common::parser::check_document_start(input_.prefix(), input_.source(), parser_);
    input_.read_prefix(static_cast<std::size_t>(settings_.sample_bytes));
}

DetectionResult TableReader::detect(const std::shared_ptr<vcos::DocWrapper>& document, const vxArray* hints) const {
    return settings_.detect ? settings_.detect(document, hints) : run_detect(document, hints);
}

// The whole input as a tree; the prefix already read is not read twice.
std::shared_ptr<vcos::DocWrapper> TableReader::load_whole() {
    if (input_.sized()) {
        document_ = vcos::load_document(input_.path(), parser_);
        return document_;
    }
    // An input of unknown size may never end: the tree takes at most so much of it.
    const std::uint64_t limit = std::max(settings_.sample_bytes, vcos::kMaxUnsizedTreeBytes);
    const std::string advice = input_.compression().empty() ? "save it to a file and give the file's name"
                                                            : "decompress it to a file and give the file's name";
    document_ = vcos::load_document_from(
        [&](char* buffer, std::size_t size) {
            const std::size_t n = input_.read(buffer, std::min(size, InputDocument::kChunkBytes));
            if (input_.consumed() > limit)
                vxErrMsgId(TOLVEN::io::xml::common::FileNotReadable(
                    input_.source(), "it is larger than " + std::to_string(limit >> 20) +
                                         " MiB, the most read from a pipe or compressed input into memory as a "
                                         "whole; let it stream, or " + advice));
            return n;
        },
        input_.source(), parser_);
    return document_;
}

RowSink TableReader::read(TableWriter& writer, Progress* progress, const Restart& restart) {
    // The trees detection built on the sample are gone by now: their memory goes back to the system
    // before the import holds rows, or the freed heap would stay counted beside them.
    if (streaming_) ::malloc_trim(0);
    RowSink sink = import(input_, writer, progress);
    if (!pending_survey_) return sink;
    const std::unique_ptr<ColumnSurvey> survey = std::move(pending_survey_);
    std::unique_ptr<InputDocument> again = restart ? input_.reopen() : nullptr;
    if (!again) {
        warn_late(*survey);
        return sink;
    }
    std::vector<std::string> types;
    for (const auto& v : result_.variables) types.push_back(v.type);
    take_survey(*survey, !settings_.head);
    bool same = result_.variables.size() == types.size();
    for (std::size_t i = 0; same && i < types.size(); ++i) same = result_.variables[i].type == types[i];
    if (same) return sink;
    make_columns();
    if (progress) progress->restart();
    return import(*again, restart(), progress);
}

RowSink TableReader::import(InputDocument& input, TableWriter& writer, Progress* progress) {
    RowSink::Settings sink_settings;
    sink_settings.head = settings_.head;
    sink_settings.strict = settings_.strict;
    sink_settings.all_repeated = settings_.all_repeated;
    RowSink sink(columns_, analyzer_, writer, sink_settings);
    if (streaming_) {
        StreamingImporter importer(*plan_, parser_);
        if (pending_survey_) importer.observe(pending_survey_.get());
        importer.set_parallel(settings_.parallel);
        importer.run(input, sink, progress);
    } else {
        TreeImporter(*plan_).run(*document_, sink);
    }
    sink.end();
    return sink;
}

}  // namespace tolven::import
