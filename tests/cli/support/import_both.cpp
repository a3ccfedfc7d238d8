#include "cli/support/import_both.hpp"

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>

#include "cli/import/CsvWriter.hpp"
#include "cli/import/ImportPlan.hpp"
#include "cli/import/InputDocument.hpp"
#include "cli/import/OutputStream.hpp"
#include "cli/import/ProgressBar.hpp"
#include "cli/import/RowSink.hpp"
#include "cli/import/StreamingImporter.hpp"
#include "cli/import/TreeImporter.hpp"
#include "cli/support/run_cli.hpp"
#include "xml/vcos/load_document.hpp"

namespace tolven::testing {

namespace {

namespace import = cli::import;

// Runs one importer into a temporary file and returns what it wrote.
template <class Run>
std::string capture(const cli::DetectionResult& result, std::optional<std::uint64_t> head, Run run) {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), &std::fclose);
    std::vector<import::Column> columns;
    for (const auto& v : result.variables) columns.push_back({v.name, v.type});
    const io::text::typedetection::TypeAnalyzerOptions options;
    {
        import::OutputStream out(fileno(file.get()), "<test>");
        import::CsvWriter writer(out, ',');
        import::RowSink sink(std::move(columns), options, writer, head);
        sink.begin();
        run(sink);
        sink.end();
        out.flush();
    }
    std::rewind(file.get());
    std::string text;
    char chunk[4096];
    for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, file.get())) > 0;) text.append(chunk, n);
    return text;
}

}  // namespace

ImportedCsv import_both(const std::string& xml, const cli::DetectionResult& result, std::optional<std::uint64_t> head) {
    const import::ImportPlan plan = import::make_import_plan(result);
    ImportedCsv csv;
    csv.tree = capture(result, head, [&](import::RowSink& sink) {
        const auto document = io::xml::common::vcos::load_document_from_memory(xml, "<test>");
        import::TreeImporter(plan).run(*document, sink);
    });
    if (plan.streamable()) {
        const std::string path = write_temp_file("doc.xml", xml);
        csv.stream = capture(result, head, [&](import::RowSink& sink) {
            import::InputDocument input(path);
            import::ProgressBar bar(false, 0);
            import::StreamingImporter(plan).run(input, sink, bar);
        });
    }
    return csv;
}

}  // namespace tolven::testing
