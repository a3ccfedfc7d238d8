// The host's work around detect, end to end: listing the candidate tables, --table N on detect and
// read, the note when another table looks likelier, -v's account of the search, and errors in the
// user's words with the builtin's identifiers kept.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

const std::string kLog = "examples/sensor-log.xml";

TEST(TablesCommand, ListsCandidatesBestFirstWithTheOptionsThatSelectEach) {
    const auto run = run_cli("tables " + kLog + " --format json");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    std::size_t last = 0;
    for (const char* field : {"Rank", "TableSelector", "RowSelector", "Rows", "Columns", "VariableNames", "Hint",
                              "Builtin", "Weak", "RegisteredNamespaces"}) {
        const std::size_t at = run.out.find('"' + std::string(field) + "\":");
        EXPECT_TRUE(at != std::string::npos && at >= last) << field;
        last = at;
    }
    const auto tables = json::parse(run.out)["Tables"];
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_EQ(tables[0]["RowSelector"], "/logfile/records/record");
    EXPECT_EQ(tables[0]["Rows"], 12);
    EXPECT_EQ(tables[0]["Hint"], json::parse(R"(["--row-selector", "/logfile/records/record"])"));
    EXPECT_EQ(tables[0]["Builtin"], false);
    EXPECT_EQ(tables[1]["Builtin"], true);
    EXPECT_EQ(tables[1]["Hint"], json::array());

    const auto text = run_cli("tables " + kLog);
    EXPECT_NE(text.out.find("1     12    4        /logfile/records/record    time, ch1, ch2, ch3\n"), std::string::npos)
        << text.out;
    EXPECT_NE(text.out.find("builtin's pick"), std::string::npos);
}

TEST(TablesCommand, TableNOnDetectAndReadYieldsWhatTablesListsAsItsHintDoes) {
    struct Case {
        std::string file;
        std::size_t rank;
        std::string header;  // read's CSV header
    };
    const Case cases[] = {
        {kLog, 1, "time,ch1,ch2,ch3"},
        {kLog, 2, "id,name,unit"},
        {"tests/data/tables/spreadsheetml-sales.xml", 1, "Date,Region,Product,Units,Revenue"},
        {"tests/data/tables/plist-installed-apps.xml", 1, "Name,BundleIdentifier,Version,SizeMB,AutoUpdate"},
        {"tests/data/tables/junit-two-suites.xml", 1, "name,classname,time,failure,message,type"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file + " " + std::to_string(c.rank));
        const auto listed = json::parse(run_cli("tables " + c.file + " --format json").out)["Tables"][c.rank - 1];
        const std::string table = " --table " + std::to_string(c.rank);
        const auto detected = json::parse(run_cli("detect " + c.file + table + " --format json").out);
        EXPECT_EQ(detected["VariableNames"], listed["VariableNames"]);
        EXPECT_EQ(detected["RowSelector"], listed["RowSelector"]);
        const auto read = run_cli("read " + c.file + table);
        ASSERT_EQ(read.exit_code, 0) << read.err;
        EXPECT_EQ(read.out.substr(0, read.out.find('\n')), c.header);
        EXPECT_EQ(std::count(read.out.begin(), read.out.end(), '\n'), listed["Rows"].get<long>() + 1);
        // The listed options select the same columns.
        std::string options;
        for (const auto& word : listed["Hint"]) {
            options += " '";
            for (const char ch : word.get<std::string>()) options += ch == '\'' ? std::string("'\\''") : std::string(1, ch);
            options += "'";
        }
        const auto hinted = json::parse(run_cli("detect " + c.file + options + " --format json").out);
        EXPECT_EQ(hinted["VariableNames"].size(), listed["VariableNames"].size());
    }
    const auto beyond = run_cli("detect " + kLog + " --table 3 --format json");
    EXPECT_EQ(beyond.exit_code, 1);
    EXPECT_EQ(json::parse(beyond.out)["Error"]["Identifier"], "TOLVEN:import:NoSuchTable");
    EXPECT_EQ(run_cli("detect " + kLog + " --table 1 --row-node-name record").exit_code, 2);
}

TEST(TablesCommand, OneNoteNamesTheLikelierTableOnlyWhenTheBuiltinPickedAnother) {
    const std::string note =
        "tolven-xml: note: the table found is /logfile/channels/channel, but 12 rows of /logfile/records/record "
        "(4 columns: time, ch1, ch2, ch3) look more like the data; select them with --table 1 (or --row-selector "
        "/logfile/records/record)\n";
    EXPECT_EQ(run_cli("detect " + kLog).err, note);
    const auto read = run_cli("read " + kLog);
    EXPECT_EQ(read.err.substr(0, note.size()), note);
    EXPECT_EQ(read.out.substr(0, read.out.find('\n')), "id,name,unit");  // still the builtin's table
    for (const char* quiet : {"detect examples/catalog.xml", "detect examples/sensor-log.xml --table 2",
                              "detect examples/sensor-log.xml --row-node-name channel"})
        EXPECT_EQ(run_cli(quiet).err, "") << quiet;
}

TEST(TablesCommand, VerboseExplainsEachLevelSearchedAgainstTheThresholds) {
    const auto kml = run_cli("detect tests/data/tables/kml-heritage-walk.xml -v");
    EXPECT_NE(kml.err.find("Starting detection..."), std::string::npos);  // the builtin's records stay
    EXPECT_NE(kml.err.find("tolven-xml: search: /ns:kml: no child element name repeats here; searching its children\n"
                           "tolven-xml: search: /ns:kml/ns:Document: [Style x3] as rows: taken, the fullest column "
                           "'@id' has a value in 3 of 3 rows (100%; more than 50% needed)\n"),
              std::string::npos)
        << kml.err;
    const auto doc = write_temp_file("sparse.xml", "<t><r><a>1</a></r><r/><r/><r/><s/></t>");
    const auto none = run_cli("detect " + doc + " -v");
    EXPECT_NE(none.err.find("/t: [r x4] as rows: rejected, the fullest column 'a' is in 1 of 4 rows "
                            "(25%; more than 50% needed)\n"
                            "tolven-xml: search: /t: [s x1] skipped: a name that occurs once is no rows (2 needed)\n"),
              std::string::npos)
        << none.err;
    EXPECT_NE(none.err.find("tolven-xml: search: no level of the document makes a table\n"), std::string::npos);
}

TEST(TablesCommand, ErrorsNameOptionsAsTypedAndSuggestWhatExists) {
    struct Case {
        std::string arguments;
        std::string identifier;
        std::string message;
    };
    const Case cases[] = {
        {"examples/catalog.xml --row-node-name books", "TOLVEN:io:xml:common:NodeNameNotFound",
         "--row-node-name: no element named 'books' exists in examples/catalog.xml; did you mean 'book'?"},
        {"examples/catalog.xml --variable-node-names titel", "TOLVEN:io:xml:detection:VariableNodeNamesNonexistentNode",
         "--variable-node-names: no element or attribute named 'titel' exists in examples/catalog.xml; did you mean "
         "'title'?"},
        {"examples/atom-feed.xml --row-selector /feed/entry", "TOLVEN:io:xml:detection:RowSelectorInvalidSelection",
         "--row-selector '/feed/entry' selects no element: its elements are in a namespace (the document's default "
         "one, or another), and XPath needs the registered prefix on every step: try --row-selector "
         "'/ns:feed/ns:entry'."},
        {"examples/catalog.xml --variable-selectors //book/title --variable-selectors //book/titel",
         "TOLVEN:io:xml:detection:VariableSelectorsInvalidSelection",
         "--variable-selectors entry 2 of 2, '//book/titel', selects nothing: no element named 'titel' exists; did "
         "you mean 'title'?"},
        {"examples/catalog.xml --row-node-name book --table-node-name catalog",
         "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint",
         "Give at most one detection hint: --table-selector, --table-node-name, --row-selector, --row-node-name, "
         "--variable-selectors and --variable-node-names cannot be combined."},
    };
    for (const Case& c : cases) {
        const auto json_run = run_cli("detect " + c.arguments + " --format json");
        const auto error = json::parse(json_run.out)["Error"];
        EXPECT_EQ(error["Identifier"], c.identifier) << c.arguments;
        EXPECT_EQ(error["Message"], c.message) << c.arguments;
        EXPECT_EQ(run_cli("read " + c.arguments).err, "tolven-xml: error: " + c.message + " (" + c.identifier + ")\n");
    }
    // The builtin's arguments are untouched.
    const auto args = json::parse(run_cli("detect examples/catalog.xml --row-node-name books --format json").out);
    EXPECT_EQ(args["Error"]["Arguments"], json::parse(R"(["RowNodeName", "books", "examples/catalog.xml"])"));
}

}  // namespace
