#include "tolven/read.hpp"

#include <unistd.h>

#include <exception>
#include <memory>
#include <optional>

#include "api/host_hints.hpp"
#include "api/public_detection.hpp"
#include "api/translate_errors.hpp"
#include "import/AtomicOutputFile.hpp"
#include "import/CsvWriter.hpp"
#include "import/InputDocument.hpp"
#include "import/JsonArrayWriter.hpp"
#include "import/JsonLinesWriter.hpp"
#include "import/OutputStream.hpp"
#include "import/SqliteWriter.hpp"
#include "import/TableReader.hpp"
#include "tables/choose_table.hpp"

namespace tolven::xml {

namespace {

// Hands the rows to the caller's sink in the public types; remembers what the sink threw, so that
// it leaves read() as it was thrown rather than as a library error.
class SinkWriter final : public import::TableWriter {
public:
    explicit SinkWriter(RowSink& sink) : sink_(sink) {}

    void begin(const std::vector<import::Column>& columns) override {
        for (const auto& c : columns) columns_.push_back({c.name, c.type});
        guard([&] { sink_.begin(columns_); });
    }
    void write_row(std::span<const import::Cell> cells) override {
        // Items first, all of them, so that the spans taken after point into storage that no longer moves.
        items_.clear();
        for (const import::Cell& cell : cells)
            for (const import::Cell& item : cell.items) items_.push_back({kind(item.kind), item.text, {}});
        cells_.resize(cells.size());
        std::size_t next = 0;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::span<const Cell> items(items_.data() + next, cells[i].items.size());
            next += items.size();
            cells_[i] = {kind(cells[i].kind), cells[i].text, items};
        }
        guard([&] { sink_.row(cells_); });
    }
    void end() override {
        guard([&] { sink_.end(); });
    }

    std::exception_ptr failure;

private:
    static Cell::Kind kind(import::Cell::Kind kind) {
        switch (kind) {
            case import::Cell::Kind::Missing: return Cell::Kind::Missing;
            case import::Cell::Kind::Number: return Cell::Kind::Number;
            case import::Cell::Kind::Text: return Cell::Kind::Text;
            case import::Cell::Kind::List: return Cell::Kind::List;
        }
        return Cell::Kind::Text;
    }
    template <class Call>
    void guard(Call call) {
        try {
            call();
        } catch (...) {
            failure = std::current_exception();
            throw;
        }
    }

    RowSink& sink_;
    std::vector<Column> columns_;
    std::vector<Cell> cells_;
    std::vector<Cell> items_;
};

import::ReadSettings internal_settings(const Hints& hints, const ReadSettings& settings) {
    import::ReadSettings s;
    if (hints.table > 0)
        s.detect = [table = hints.table](const auto& document, const vxArray* host_hints) {
            return tolven::tables::choose_table(document, host_hints, table);
        };
    s.mode = settings.mode == ReadSettings::Mode::Stream ? import::ReadSettings::Mode::Stream
             : settings.mode == ReadSettings::Mode::Tree ? import::ReadSettings::Mode::Tree
                                                         : import::ReadSettings::Mode::Auto;
    s.sample_bytes = settings.sample_bytes;
    s.head = settings.head;
    s.parallel = settings.parallel;
    return s;
}

std::unique_ptr<import::InputDocument> open(const Source& source) {
    if (source.in_memory) return std::make_unique<import::InputDocument>(source.bytes, source.name);
    return std::make_unique<import::InputDocument>(source.name);
}

// Detects the table and imports it into writer, which make_writer builds from the columns.
template <class MakeWriter>
ReadSummary run(const Source& source, const Hints& hints, const ReadSettings& settings,
                const std::function<void(std::string_view)>& notes, MakeWriter make_writer) {
    const vxArrayPtr host_hints = api::make_hint_struct(hints);
    const auto input = open(source);
    import::TableReader reader(*input, host_hints.get(), internal_settings(hints, settings), notes);
    ReadSummary summary;
    summary.detection = api::public_detection(reader.result());
    const import::RowSink sink = make_writer(reader);
    // Columns standard input held past the sample, which could not be written.
    if (notes)
        for (const std::string& warning : reader.warnings()) notes("warning: " + warning);
    summary.rows = sink.rows();
    for (std::size_t i = 0; i < sink.column_count(); ++i) {
        summary.columns.push_back({sink.name(i), sink.type(i)});
        summary.counts.push_back({sink.missing(i), sink.unconvertible(i)});
    }
    summary.streamed = reader.streaming();
    return summary;
}

}  // namespace

ValueType value_type(std::string_view type) noexcept {
    if (type == "double" || type == "single" || type == "int8" || type == "int16" || type == "int32" ||
        type == "int64")
        return ValueType::Double;
    if (type == "uint8" || type == "uint16" || type == "uint32" || type == "uint64") return ValueType::UInt64;
    if (type == "datetime") return ValueType::Datetime;
    if (type == "duration") return ValueType::Duration;
    return ValueType::Text;
}

ReadSummary read(const Source& source, RowSink& sink, const Hints& hints, const ReadSettings& settings,
                 const std::function<void(std::string_view)>& notes) {
    std::exception_ptr sink_failure;
    try {
        return run(source, hints, settings, notes, [&](import::TableReader& reader) {
            SinkWriter writer(sink);
            try {
                return reader.read(writer);
            } catch (...) {
                sink_failure = writer.failure;
                throw;
            }
        });
    } catch (...) {
        if (sink_failure) std::rethrow_exception(sink_failure);
        api::rethrow_translated();
    }
}

ReadSummary read(const Source& source, const Output& output, const Hints& hints, const ReadSettings& settings,
                 const std::function<void(std::string_view)>& notes) {
    return api::translating_errors([&] {
        return run(source, hints, settings, notes, [&](import::TableReader& reader) {
            if (output.format == Output::Format::Sqlite) {
                const std::string table = !output.table_name.empty() ? output.table_name
                                          : source.in_memory       ? std::string("data")
                                                                   : import::default_table_name(source.name);
                import::SqliteWriter writer(output.path, table, output.replace);
                return reader.read(writer);
            }
            const bool to_stdout = output.path.empty() || output.path == "-";
            std::optional<import::AtomicOutputFile> file;
            if (!to_stdout) file.emplace(output.path);
            import::OutputStream out(file ? file->fd() : STDOUT_FILENO, file ? output.path : "<stdout>");
            std::unique_ptr<import::TableWriter> writer;
            switch (output.format) {
                case Output::Format::Tsv: writer = std::make_unique<import::CsvWriter>(out, '\t'); break;
                case Output::Format::JsonLines: writer = std::make_unique<import::JsonLinesWriter>(out); break;
                case Output::Format::Json: writer = std::make_unique<import::JsonArrayWriter>(out); break;
                default: writer = std::make_unique<import::CsvWriter>(out, ','); break;
            }
            import::RowSink sink = reader.read(*writer);
            out.flush();
            if (file) file->commit();
            return sink;
        });
    });
}

}  // namespace tolven::xml
