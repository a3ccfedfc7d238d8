// The tree and the streaming importer on a result the command line cannot produce: a column
// outside the rows. Both must agree with what the selectors mean.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "import/DetectionResult.hpp"
#include "import/CsvWriter.hpp"
#include "import/ImportPlan.hpp"
#include "import/InputDocument.hpp"
#include "import/OutputStream.hpp"
#include "import/RowSink.hpp"
#include "import/StreamingImporter.hpp"
#include "import/TreeImporter.hpp"
#include "support/files.hpp"
#include "xml/vcos/load_document.hpp"

namespace {

namespace import = tolven::import;
using tolven::testing::write_temp_file;

// The CSV one importer writes for xml, rows under row, string columns of the given selectors.
std::string import_csv(const std::string& xml, const std::string& row,
                       const std::vector<std::pair<std::string, std::string>>& variables, bool stream) {
    tolven::import::DetectionResult result;
    result.table_detected = true;
    result.row_selector = row;
    std::vector<import::Column> columns;
    for (const auto& [name, selector] : variables) {
        result.variables.push_back({name, "string", selector});
        columns.emplace_back().name = name;
        columns.back().type = "string";
    }
    const import::ImportPlan plan = import::make_import_plan(result);
    EXPECT_TRUE(plan.streamable()) << plan.fallback_reason();
    const tolven::io::text::typedetection::TypeAnalyzerOptions options;
    const std::string document = write_temp_file("doc.xml", xml), output = write_temp_file("out.csv", "");
    const int fd = ::open(output.c_str(), O_WRONLY | O_TRUNC);
    {
        import::OutputStream out(fd, "<test>");
        import::CsvWriter writer(out, ',');
        import::RowSink sink(columns, options, writer, {});
        import::InputDocument input(document);
        if (stream) import::StreamingImporter(plan).run(input, sink);
        else import::TreeImporter(plan).run(*tolven::io::xml::common::vcos::load_document(document), sink);
        sink.end();
        out.flush();
    }
    ::close(fd);
    return tolven::testing::slurp(output);
}

TEST(Importers, VariableOutsideTheRowsIsAlignedByIndex) {
    const std::string xml = "<t><r><a>1</a></r><r><a>2</a></r><r><a>3</a></r><notes><n>first</n><n>second</n></notes></t>";
    // The notes come after every row: the rows wait for them, then the last row gets none.
    for (const bool stream : {false, true}) {
        EXPECT_EQ(import_csv(xml, "/t/r", {{"a", "/t/r/a"}, {"n", "/t/notes/n"}}, stream), "a,n\n1,first\n2,second\n3,\n");
        // More values than rows: the extra ones make no rows.
        EXPECT_EQ(import_csv(xml, "/t/r[2]", {{"a", "/t/r[2]/a"}, {"n", "/t/notes/n"}}, stream), "a,n\n2,first\n");
    }
}

TEST(Importers, WideElementsFindEachAttributeByName) {
    // Twenty attributes and more are looked up by name: the first of each name, in no namespace
    // unless the selector names one.
    std::string attributes = " xmlns:p='urn:p' p:lang='p' lang='plain' xml:lang='en' lang2='x'";
    for (int i = 0; i < 20; ++i) attributes += " a" + std::to_string(i) + "='" + std::to_string(i * i) + "'";
    const std::string xml = "<t><r" + attributes + "/><r a3='only'/><r" + attributes + " extra='e'/></t>";
    const std::vector<std::pair<std::string, std::string>> columns = {
        {"a19", "/t/r/@a19"}, {"lang", "/t/r/@lang"},     {"xml_lang", "/t/r/@xml:lang"}, {"a0", "/t/r/@a0"},
        {"extra", "/t/r/@extra"}, {"a3", "/t/r/@a3"}, {"none", "/t/r/@a20"}};
    for (const bool stream : {false, true})
        EXPECT_EQ(import_csv(xml, "/t/r", columns, stream),
                  "a19,lang,xml_lang,a0,extra,a3,none\n361,plain,en,0,,9,\n,,,,,only,\n361,plain,en,0,e,9,\n")
            << stream;
}

}  // namespace
