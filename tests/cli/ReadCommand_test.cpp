#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::CliRun;
using tolven::testing::example;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;
namespace fs = std::filesystem;

constexpr const char* kPaths[] = {"--stream", "--no-stream"};
constexpr const char* kFormats[] = {"csv", "tsv", "jsonl", "json"};

std::string quote(const std::string& s) { return "'" + s + "'"; }

std::string slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::vector<std::string> folder_entries(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// Reads with both paths, expects them to succeed with the same output, and returns it.
std::string read_both(const std::string& arguments, std::string* err = nullptr) {
    const CliRun stream = run_cli("read " + arguments + " --stream");
    const CliRun tree = run_cli("read " + arguments + " --no-stream");
    EXPECT_EQ(stream.exit_code, 0) << arguments << "\n" << stream.err;
    EXPECT_EQ(tree.exit_code, 0) << arguments << "\n" << tree.err;
    EXPECT_EQ(stream.out, tree.out) << arguments;
    if (err != nullptr) *err = tree.err;
    return tree.out;
}

// rows, rows of one column each: "<t><r><v>..</v></r>...</t>"
std::string one_column_document(const std::vector<std::string>& values) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<t>\n";
    for (const auto& v : values) xml += "  <r><v>" + v + "</v><n>1</n></r>\n";
    return xml + "</t>\n";
}

// A table of many rows whose end is not well-formed.
std::string document_broken_after(int rows) {
    std::string xml = "<t>\n";
    for (int i = 0; i < rows; ++i) {
        const std::string n = std::to_string(i);
        xml += "  <r><a>" + n + "</a><b>x" + n + "</b></r>\n";
    }
    return xml + "  <r><a>0</a></x>\n</t>\n";
}

TEST(ReadCommand, ExamplesImportTheSameThroughBothPathsInEveryFormat) {
    for (const char* name : {"catalog.xml", "feed.xml", "atom-feed.xml", "key-value.xml"}) {
        for (const char* format : kFormats) {
            const std::string out = read_both(quote(example(name)) + " --format " + format);
            ASSERT_FALSE(out.empty()) << name << " " << format;
            EXPECT_EQ(out.back(), '\n') << name << " " << format;
        }
    }
}

TEST(ReadCommand, CatalogColumnsAreConvertedByTheirTypes) {
    const std::string csv = read_both("examples/catalog.xml");
    EXPECT_EQ(csv,
              "id,author,title,genre,price,publish_date,description\n"
              "bk101,\"Gambardella, Matthew\",XML Developer's Guide,Computer,44.95,2000-10-01,"
              "An in-depth look at creating applications with XML.\n"
              "bk102,\"Ralls, Kim\",Midnight Rain,Fantasy,5.95,2000-12-16,"
              "A former architect battles corporate zombies.\n"
              "bk103,\"Corets, Eva\",Maeve Ascendant,Fantasy,5.95,2000-11-17,\"After the collapse of a nanotechnology "
              "society, the young survivors lay the foundation for a new society.\"\n"
              "bk104,\"Knorr, Stefan\",Creepy Crawlies,Horror,4.95,2000-12-06,\"An anthology of horror stories about "
              "roaches, centipedes, scorpions and other insects.\"\n");

    // Dates, durations and numbers of the feed; the shortest text of 11.0 is 11.
    EXPECT_EQ(read_both("examples/feed.xml"),
              "title,link,pubDate,temperature,wind\n"
              "Calm morning,https://weather.example.org/r/1,2003-06-10T04:00:00Z,12.5,01:30:00\n"
              "Rising wind,https://weather.example.org/r/2,2003-06-11T04:00:00Z,11,02:10:00\n"
              "Storm warning,https://weather.example.org/r/3,2003-06-12T04:00:00Z,9.75,05:45:00\n");
}

TEST(ReadCommand, DefaultNamespaceAndPrefixedColumnsAreMatched) {
    EXPECT_EQ(read_both("examples/atom-feed.xml"),
              "id,title,updated,geo:lat,geo:long\n"
              "urn:sensor:1,North pier,2024-01-05T10:20:30Z,51.5072,-0.1276\n"
              "urn:sensor:2,South pier,2024-01-05T10:25:00Z,51.4995,-0.1248\n"
              "urn:sensor:3,Lighthouse,2024-01-05T10:30:12Z,51.4821,-0.1102\n");
}

TEST(ReadCommand, NonRowGroupedTableTakesTheIthOccurrenceOfEachName) {
    EXPECT_EQ(read_both("examples/key-value.xml"),
              "date,amount,memo\n"
              "2024-03-01,-12.5,Coffee beans\n"
              "2024-03-02,2500,Salary\n"
              "2024-03-04,-64.1,Groceries\n"
              "2024-03-07,-9.99,Music subscription\n");
}

TEST(ReadCommand, CsvQuotesSeparatorsQuotesAndLineBreaks) {
    const auto file = write_temp_file(
        "q.xml", one_column_document({"plain", "a,b", "say \"hi\"", "two\nlines", "cr&#13;here", "tab\there",
                                      "  trimmed \t", "<![CDATA[x<y]]> &amp; z"}));
    EXPECT_EQ(read_both(quote(file)),
              "v,n\nplain,1\n\"a,b\",1\n\"say \"\"hi\"\"\",1\n\"two\nlines\",1\n\"cr\rhere\",1\ntab\there,1\n"
              "trimmed,1\nx<y & z,1\n");
    // In TSV the tab is the separator to quote, the comma is not.
    EXPECT_EQ(read_both(quote(file) + " --format tsv"),
              "v\tn\nplain\t1\na,b\t1\n\"say \"\"hi\"\"\"\t1\n\"two\nlines\"\t1\n\"cr\rhere\"\t1\n\"tab\there\"\t1\n"
              "trimmed\t1\nx<y & z\t1\n");
    const std::string jsonl = read_both(quote(file) + " --format jsonl");
    std::istringstream lines(jsonl);
    std::vector<std::string> values;
    for (std::string line; std::getline(lines, line);) values.push_back(json::parse(line)["v"]);
    EXPECT_EQ(values, (std::vector<std::string>{"plain", "a,b", "say \"hi\"", "two\nlines", "cr\rhere", "tab\there",
                                                "trimmed", "x<y & z"}));
}

TEST(ReadCommand, NonAsciiTextIsWrittenAsUtf8WhateverTheDocumentEncoding) {
    const auto utf8 = write_temp_file("u.xml", one_column_document({"Zürich – 東京 😀", "naïve"}));
    EXPECT_EQ(read_both(quote(utf8)), "v,n\nZürich – 東京 😀,1\nnaïve,1\n");
    EXPECT_EQ(json::parse(read_both(quote(utf8) + " --format json"))[0]["v"], "Zürich – 東京 😀");

    const auto latin1 = write_temp_file(
        "l.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<t><r><v>Z\xfcrich</v><n>1</n></r>"
                 "<r><v>Gen\xe8ve</v><n>2</n></r></t>\n");
    EXPECT_EQ(read_both(quote(latin1)), "v,n\nZürich,1\nGenève,2\n");
}

TEST(ReadCommand, MissingAndUnconvertibleValuesAreEmptyOrNullAndCounted) {
    const auto file = write_temp_file("m.xml", R"(<t>
  <r><n>1.5</n><d>2024-01-02</d><s>a</s></r>
  <r><n>abc</n><d>not a date</d><s>b</s></r>
  <r><n>  </n><d>2024-02-03</d></r>
  <r><n>1e3</n><d>2024-03-04</d><s>c</s></r>
  <r><n>2</n><d>2024-03-05</d><s>d</s></r>
</t>)");
    std::string err;
    EXPECT_EQ(read_both(quote(file), &err),
              "n,d,s\n1.5,2024-01-02,a\n,,b\n,2024-02-03,\n1000,2024-03-04,c\n2,2024-03-05,d\n");
    EXPECT_NE(err.find("tolven-xml: 5 rows, 3 columns\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  n       double          1              1\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  d       datetime        0              1\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  s       string          1              0\n"), std::string::npos) << err;

    const std::string jsonl = read_both(quote(file) + " --format jsonl");
    EXPECT_EQ(jsonl.substr(0, jsonl.find('\n') + 1), "{\"n\":1.5,\"d\":\"2024-01-02\",\"s\":\"a\"}\n");
    EXPECT_NE(jsonl.find("{\"n\":null,\"d\":\"2024-02-03\",\"s\":null}\n"), std::string::npos) << jsonl;
    const json array = json::parse(read_both(quote(file) + " --format json"));
    ASSERT_EQ(array.size(), 5u);
    EXPECT_TRUE(array[3]["n"].is_number());
    EXPECT_EQ(array[3]["n"], 1000);
    EXPECT_TRUE(array[1]["n"].is_null());
}

TEST(ReadCommand, ColumnNamesAreMadeUnique) {
    // The attribute id and the element id: the attribute takes the suffix.
    const auto file =
        write_temp_file("n.xml", R"(<t><r id="1"><id>a</id><x>2</x></r><r id="2"><id>b</id><x>3</x></r></t>)");
    EXPECT_EQ(read_both(quote(file)), "idAttribute,id,x\n1,a,2\n2,b,3\n");
    EXPECT_EQ(read_both(quote(file) + " --attribute-suffix _attr"), "id_attr,id,x\n1,a,2\n2,b,3\n");

    // A union of rows: the rows' own text and their child title are both named title.
    const std::string header = read_both("examples/catalog.xml --row-selector '/catalog/book|/catalog/title' --head 0");
    EXPECT_EQ(header, "title,id,author,title_2,genre,price,publish_date,description\n");
}

TEST(ReadCommand, HeadStopsReadingOnceItHasTheRows) {
    const auto broken = write_temp_file("b.xml", document_broken_after(300));
    // The sample ends well before the fault: only the streaming pass could reach it.
    const CliRun head = run_cli("read " + quote(broken) + " --sample-bytes 1KiB --head 3");
    EXPECT_EQ(head.exit_code, 0) << head.err;
    EXPECT_EQ(head.out, "a,b\n0,x0\n1,x1\n2,x2\n");
    EXPECT_NE(head.err.find("3 rows, 2 columns"), std::string::npos);

    const CliRun piped = run_cli("read - --sample-bytes 1KiB --head 2 --format jsonl", broken);
    EXPECT_EQ(piped.exit_code, 0) << piped.err;
    EXPECT_EQ(piped.out, "{\"a\":0,\"b\":\"x0\"}\n{\"a\":1,\"b\":\"x1\"}\n");

    EXPECT_EQ(run_cli("read examples/catalog.xml --head 0 --stream").out,
              "id,author,title,genre,price,publish_date,description\n");
    EXPECT_EQ(run_cli("read examples/catalog.xml --head 0 --format json").out, "[]\n");
}

TEST(ReadCommand, MalformedDocumentFailsWithPlaceAndExitCodeThree) {
    const auto broken = write_temp_file("b.xml", document_broken_after(300));
    const std::string place = "b.xml:302:18: the document is not well-formed XML";
    for (const std::string arguments : {"--sample-bytes 1KiB", "--stream --sample-bytes 1KiB", "--no-stream", ""}) {
        const CliRun run = run_cli("read " + quote(broken) + " " + arguments);
        EXPECT_EQ(run.exit_code, 3) << arguments;
        EXPECT_NE(run.err.find(place), std::string::npos) << arguments << "\n" << run.err;
        EXPECT_NE(run.err.find("(TOLVEN:io:xml:common:MalformedDocument)"), std::string::npos);
        EXPECT_EQ(run.out, "") << arguments;
    }
    const CliRun piped = run_cli("read - --sample-bytes 1KiB", broken);
    EXPECT_EQ(piped.exit_code, 3);
    EXPECT_NE(piped.err.find("<stdin>:302:18:"), std::string::npos) << piped.err;
}

TEST(ReadCommand, FailedReadLeavesNoOutputFileAndAnExistingOneUntouched) {
    const auto broken = write_temp_file("b.xml", document_broken_after(300));
    const fs::path folder = fs::path(broken).parent_path();
    const fs::path target = folder / "out.csv";
    for (const std::string arguments : {"--sample-bytes 1KiB", "--no-stream"}) {
        const CliRun fresh = run_cli("read " + quote(broken) + " " + arguments + " -o " + quote(target.string()));
        EXPECT_EQ(fresh.exit_code, 3);
        EXPECT_EQ(folder_entries(folder), std::vector<std::string>{"b.xml"}) << arguments;
    }

    std::ofstream(target) << "keep me\n";
    const CliRun over = run_cli("read " + quote(broken) + " --sample-bytes 1KiB -o " + quote(target.string()));
    EXPECT_EQ(over.exit_code, 3);
    EXPECT_EQ(slurp(target), "keep me\n");
    EXPECT_EQ(folder_entries(folder), (std::vector<std::string>{"b.xml", "out.csv"}));

    // A document that never parses, and one without a table, leave it alone as well.
    const std::string unparsable = quote(write_temp_file("x.xml", "<t><r>"));
    EXPECT_EQ(run_cli("read " + unparsable + " -o " + quote(target.string())).exit_code, 3);
    EXPECT_EQ(slurp(target), "keep me\n");

    const CliRun done = run_cli("read examples/key-value.xml --format jsonl -o " + quote(target.string()));
    EXPECT_EQ(done.exit_code, 0) << done.err;
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(slurp(target), run_cli("read examples/key-value.xml --format jsonl").out);
    EXPECT_EQ(folder_entries(folder), (std::vector<std::string>{"b.xml", "out.csv"}));
}

TEST(ReadCommand, OutputThroughALinkOrToAPipeKeepsTheLinkAndThePipe) {
    const fs::path folder = fs::path(write_temp_file("real.csv", "old\n")).parent_path();
    fs::create_symlink(folder / "real.csv", folder / "link.csv");
    const std::string expected = run_cli("read examples/key-value.xml").out;
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote((folder / "link.csv").string())).exit_code, 0);
    EXPECT_TRUE(fs::is_symlink(folder / "link.csv"));
    EXPECT_EQ(slurp(folder / "real.csv"), expected);

    // A replaced file keeps its permissions.
    fs::permissions(folder / "real.csv", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote((folder / "real.csv").string())).exit_code, 0);
    EXPECT_EQ(fs::status(folder / "real.csv").permissions(), fs::perms::owner_read | fs::perms::owner_write);

    // A named pipe stands for devices such as /dev/null: written in place, never replaced.
    const fs::path fifo = folder / "pipe";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    // Held open for reading and writing, the pipe never blocks the command; the rows fit its buffer.
    const int held = ::open(fifo.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(held, 0);
    const CliRun run = run_cli("read examples/key-value.xml -o " + quote(fifo.string()));
    EXPECT_EQ(run.exit_code, 0) << run.err;
    char buffer[4096];
    const ssize_t n = ::read(held, buffer, sizeof buffer);
    ::close(held);
    EXPECT_EQ(std::string(buffer, n > 0 ? static_cast<std::size_t>(n) : 0), expected);
    EXPECT_EQ(fs::status(fifo).type(), fs::file_type::fifo);
}

TEST(ReadCommand, SelectorsThePathMatcherCannotFollowFallBackToTheTree) {
    // The hint's row selector comes back in parentheses in the variables' selectors.
    const std::string all = run_cli("read examples/catalog.xml --no-stream").out;
    for (const std::string hint : {"'/catalog/book'", "'/catalog/book[2]'"}) {
        const CliRun run = run_cli("read examples/catalog.xml --stream --row-selector " + hint);
        EXPECT_EQ(run.exit_code, 0) << run.err;
        EXPECT_EQ(run.err.find("note:"), std::string::npos) << hint << run.err;
    }
    EXPECT_EQ(run_cli("read examples/catalog.xml --stream --table-selector /catalog").out, all);

    struct Case {
        std::string hint, reason;
        int rows;
    };
    for (const Case& c : {Case{"'/catalog/book[price>5]'", "has a predicate other than a position '[price>5]'", 3},
                          Case{"'/catalog/book|/catalog/title'", "uses a union ('|')", 5},
                          Case{"'//book'", "uses the descendant axis ('//')", 4}}) {
        const CliRun stream = run_cli("read examples/catalog.xml --format jsonl --stream --row-selector " + c.hint);
        const CliRun tree = run_cli("read examples/catalog.xml --format jsonl --no-stream --row-selector " + c.hint);
        EXPECT_EQ(stream.exit_code, 0) << stream.err;
        EXPECT_EQ(stream.out, tree.out) << c.hint;
        EXPECT_EQ(std::count(stream.out.begin(), stream.out.end(), '\n'), c.rows) << c.hint;
        EXPECT_NE(stream.err.find("tolven-xml: note: the whole document is read into memory as a tree, since the "
                                  "row selector "),
                  std::string::npos)
            << stream.err;
        EXPECT_NE(stream.err.find(c.reason), std::string::npos) << stream.err;
        EXPECT_EQ(tree.err.find("note:"), std::string::npos);
    }

    // Each row of the union gets its own values, not the i-th of the whole document.
    const CliRun union_rows =
        run_cli("read examples/catalog.xml --format jsonl --row-selector '/catalog/book|/catalog/title' --head 2");
    std::istringstream lines(union_rows.out);
    std::string first, second;
    std::getline(lines, first);
    std::getline(lines, second);
    EXPECT_EQ(json::parse(first)["title"], "Spring list");
    EXPECT_TRUE(json::parse(first)["id"].is_null());
    EXPECT_EQ(json::parse(second)["id"], "bk101");
    EXPECT_EQ(json::parse(second)["title_2"], "XML Developer's Guide");
}

TEST(ReadCommand, VariableHintsMakeTheIthRowFromTheIthNodeOfEachSelector) {
    const std::string csv = read_both(
        "examples/catalog.xml --variable-selectors /catalog/book/author /catalog/book/@id /catalog/title");
    EXPECT_EQ(csv,
              "author,id,title\n\"Gambardella, Matthew\",bk101,Spring list\n\"Ralls, Kim\",bk102,\n"
              "\"Corets, Eva\",bk103,\n\"Knorr, Stefan\",bk104,\n");
    // A row missing one variable shifts that variable's later values up: they are aligned by index.
    const auto file = write_temp_file("v.xml", "<t><r><a>1</a><b>x</b></r><r><b>y</b></r><r><a>3</a><b>z</b></r></t>");
    EXPECT_EQ(read_both(quote(file) + " --variable-node-names a b"), "a,b\n1,x\n3,y\n,z\n");
}

TEST(ReadCommand, ReadsStandardInput) {
    const CliRun piped = run_cli("read - --format tsv", example("catalog.xml"));
    EXPECT_EQ(piped.exit_code, 0) << piped.err;
    EXPECT_EQ(piped.out.substr(0, piped.out.find('\n')), "id\tauthor\ttitle\tgenre\tprice\tpublish_date\tdescription");
    EXPECT_EQ(std::count(piped.out.begin(), piped.out.end(), '\n'), 5);

    // Larger than the sample: streamed from the pipe.
    const auto big = write_temp_file("big.xml", one_column_document(std::vector<std::string>(500, "v")));
    const CliRun streamed = run_cli("read - --sample-bytes 2KiB", big);
    EXPECT_EQ(streamed.exit_code, 0) << streamed.err;
    EXPECT_EQ(streamed.out, run_cli("read " + quote(big) + " --no-stream").out);
}

TEST(ReadCommand, SummaryGoesToStandardErrorAndNoProgressBarOffATerminal) {
    const auto big = write_temp_file("big.xml", one_column_document(std::vector<std::string>(20000, "value")));
    const CliRun run = run_cli("read " + quote(big) + " --sample-bytes 4KiB --format jsonl");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    EXPECT_EQ(run.err,
              "tolven-xml: 20000 rows, 2 columns\n"
              "  column  type    missing  unconvertible\n"
              "  v       string        0              0\n"
              "  n       double        0              0\n");
    EXPECT_EQ(run.out.back(), '\n');
    EXPECT_EQ(run.out.find("tolven-xml"), std::string::npos);
}

TEST(ReadCommand, NoTableAndBadArgumentsAreReported) {
    const auto file = write_temp_file("one.xml", "<a><b>1</b></a>");
    const CliRun none = run_cli("read " + quote(file));
    EXPECT_EQ(none.exit_code, 1);
    EXPECT_NE(none.err.find("(TOLVEN:cli:NoTableDetected)"), std::string::npos) << none.err;
    EXPECT_EQ(run_cli("read examples/catalog.xml --format xml").exit_code, 2);
    EXPECT_EQ(run_cli("read examples/catalog.xml --stream --no-stream").exit_code, 2);
    EXPECT_EQ(run_cli("read examples/no-such-file.xml").exit_code, 3);
}

}  // namespace
