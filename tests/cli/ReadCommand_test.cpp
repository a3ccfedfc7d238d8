#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::CliRun;
using tolven::testing::example;
using tolven::testing::run_cli;
using tolven::testing::slurp;
using tolven::testing::write_temp_file;
namespace fs = std::filesystem;

std::string quote(const std::string& s) { return "'" + s + "'"; }

// Reads with both paths, expects them to succeed with the same output, and returns it.
std::string read_both(const std::string& arguments, std::string* stream_err = nullptr) {
    const CliRun stream = run_cli("read " + arguments + " --stream");
    const CliRun one_thread = run_cli("read " + arguments + " --stream --threads 1");
    const CliRun tree = run_cli("read " + arguments + " --no-stream");
    EXPECT_EQ(stream.exit_code, 0) << arguments << "\n" << stream.err;
    EXPECT_EQ(tree.exit_code, 0) << arguments << "\n" << tree.err;
    EXPECT_EQ(stream.out, tree.out) << arguments;
    EXPECT_EQ(one_thread.out, stream.out) << arguments;
    if (stream_err != nullptr) *stream_err = stream.err;
    return tree.out;
}

// A file of rows "<r><v>value</v><n>1</n></r>".
std::string one_column_file(const std::vector<std::string>& values) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<t>\n";
    for (const auto& v : values) xml += "  <r><v>" + v + "</v><n>1</n></r>\n";
    return quote(write_temp_file("d.xml", xml + "</t>\n"));
}

// A table of 300 rows whose end, at line 302, is not well-formed.
std::string broken_file() {
    std::string xml = "<t>\n";
    for (int i = 0; i < 300; ++i) xml += "  <r><a>" + std::to_string(i) + "</a><b>x" + std::to_string(i) + "</b></r>\n";
    return write_temp_file("b.xml", xml + "  <r><a>0</a></x>\n</t>\n");
}

TEST(ReadCommand, ExamplesImportTheSameThroughBothPathsInEveryFormat) {
    const std::pair<const char*, const char*> examples[] = {
        {"catalog.xml",
         "id,author,title,genre,price,publish_date,description\n"
         "bk101,\"Gambardella, Matthew\",XML Developer's Guide,Computer,44.95,2000-10-01,"
         "An in-depth look at creating applications with XML.\n"
         "bk102,\"Ralls, Kim\",Midnight Rain,Fantasy,5.95,2000-12-16,A former architect battles corporate zombies.\n"
         "bk103,\"Corets, Eva\",Maeve Ascendant,Fantasy,5.95,2000-11-17,\"After the collapse of a nanotechnology "
         "society, the young survivors lay the foundation for a new society.\"\n"
         "bk104,\"Knorr, Stefan\",Creepy Crawlies,Horror,4.95,2000-12-06,\"An anthology of horror stories about "
         "roaches, centipedes, scorpions and other insects.\"\n"},
        // Dates, durations and numbers; the shortest text of 11.0 is 11.
        {"feed.xml",
         "title,link,pubDate,temperature,wind\n"
         "Calm morning,https://weather.example.org/r/1,2003-06-10T04:00:00Z,12.5,01:30:00\n"
         "Rising wind,https://weather.example.org/r/2,2003-06-11T04:00:00Z,11,02:10:00\n"
         "Storm warning,https://weather.example.org/r/3,2003-06-12T04:00:00Z,9.75,05:45:00\n"},
        // A default namespace and prefixed columns.
        {"atom-feed.xml",
         "id,title,updated,geo:lat,geo:long\n"
         "urn:sensor:1,North pier,2024-01-05T10:20:30Z,51.5072,-0.1276\n"
         "urn:sensor:2,South pier,2024-01-05T10:25:00Z,51.4995,-0.1248\n"
         "urn:sensor:3,Lighthouse,2024-01-05T10:30:12Z,51.4821,-0.1102\n"},
        // No row elements: the i-th occurrence of each name makes the i-th row.
        {"key-value.xml",
         "date,amount,memo\n2024-03-01,-12.5,Coffee beans\n2024-03-02,2500,Salary\n2024-03-04,-64.1,Groceries\n"
         "2024-03-07,-9.99,Music subscription\n"}};
    for (const auto& [name, csv] : examples) {
        EXPECT_EQ(read_both(quote(example(name))), csv);
        for (const char* format : {"tsv", "jsonl", "json"}) read_both(quote(example(name)) + " --format " + format);
    }
}

TEST(ReadCommand, CsvQuotesSeparatorsQuotesAndLineBreaks) {
    const auto file = one_column_file(
        {"plain", "a,b", "say \"hi\"", "two\nlines", "cr&#13;here", "tab\there", "  trimmed \t", "<![CDATA[x<y]]> &amp; z",
         "a<!-- not kept -->b<?pi nor this?>c"});
    EXPECT_EQ(read_both(file), "v,n\nplain,1\n\"a,b\",1\n\"say \"\"hi\"\"\",1\n\"two\nlines\",1\n\"cr\rhere\",1\n"
                               "tab\there,1\ntrimmed,1\nx<y & z,1\nabc,1\n");
    // In TSV the tab is the separator to quote, the comma is not.
    EXPECT_EQ(read_both(file + " --format tsv"),
              "v\tn\nplain\t1\na,b\t1\n\"say \"\"hi\"\"\"\t1\n\"two\nlines\"\t1\n\"cr\rhere\"\t1\n\"tab\there\"\t1\n"
              "trimmed\t1\nx<y & z\t1\nabc\t1\n");
    std::vector<std::string> values;
    for (const auto& row : json::parse(read_both(file + " --format json"))) values.push_back(row["v"]);
    EXPECT_EQ(values, (std::vector<std::string>{"plain", "a,b", "say \"hi\"", "two\nlines", "cr\rhere", "tab\there",
                                                "trimmed", "x<y & z", "abc"}));
}

TEST(ReadCommand, NonAsciiTextIsWrittenAsUtf8WhateverTheDocumentEncoding) {
    const auto utf8 = one_column_file({"Zürich – 東京 😀", "naïve"});
    EXPECT_EQ(read_both(utf8), "v,n\nZürich – 東京 😀,1\nnaïve,1\n");
    EXPECT_EQ(json::parse(read_both(utf8 + " --format json"))[0]["v"], "Zürich – 東京 😀");

    const auto latin1 = write_temp_file(
        "l.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<t><r><v>Z\xfcrich</v><n>1</n></r>"
                 "<r><v>Gen\xe8ve</v><n>2</n></r></t>\n");
    EXPECT_EQ(read_both(quote(latin1)), "v,n\nZürich,1\nGenève,2\n");

    // Entities expand alike in text, in attributes and into whole rows.
    const auto entities = write_temp_file("e.xml", R"(<!DOCTYPE t [<!ENTITY who "Zoë &amp; co"><!ENTITY row "<r k='2'><v>&who;</v></r>">]>
<t><r k="&who;"><v>by &who;!</v></r>&row;</t>)");
    EXPECT_EQ(read_both(quote(entities)), "k,v\nZoë & co,by Zoë & co!\n2,Zoë & co\n");
}

TEST(ReadCommand, MissingValuesAreEmptyOrNullAndUnconvertibleOnesWrittenAsTheyStand) {
    const auto file = quote(write_temp_file("m.xml", R"(<t>
  <r><n>1.5</n><d>2024-01-02</d><s>a</s></r>
  <r><n>abc</n><d>not a date</d><s>b</s></r>
  <r><n>  </n><d>2024-02-03</d></r>
  <r><n>1e3</n><d>2024-03-04</d><s>c</s></r>
  <r><n>2</n><d>2024-03-05</d><s>d</s></r>
</t>)"));
    std::string err;
    EXPECT_EQ(read_both(file, &err),
              "n,d,s\n1.5,2024-01-02,a\nabc,not a date,b\n,2024-02-03,\n1000,2024-03-04,c\n2,2024-03-05,d\n");
    EXPECT_NE(err.find("tolven-xml: 5 rows, 3 columns\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  n       n         double          1              1         0\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  d       d         datetime        0              1         0\n"), std::string::npos) << err;
    EXPECT_NE(err.find("  s       s         string          1              0         0\n"), std::string::npos) << err;
    EXPECT_EQ(json::parse(read_both(file + " --format json")), json::parse(R"([
        {"n": 1.5, "d": "2024-01-02", "s": "a"}, {"n": "abc", "d": "not a date", "s": "b"},
        {"n": null, "d": "2024-02-03", "s": null}, {"n": 1000, "d": "2024-03-04", "s": "c"},
        {"n": 2, "d": "2024-03-05", "s": "d"}])"));
}

TEST(ReadCommand, ColumnNamesAreMadeUnique) {
    // The attribute id and the element id: the attribute takes the suffix.
    const auto file =
        quote(write_temp_file("n.xml", R"(<t><r id="1"><id>a</id><x>2</x></r><r id="2"><id>b</id><x>3</x></r></t>)"));
    EXPECT_EQ(read_both(file), "idAttribute,id,x\n1,a,2\n2,b,3\n");
    EXPECT_EQ(read_both(file + " --attribute-suffix _attr"), "id_attr,id,x\n1,a,2\n2,b,3\n");
    // detect and read's summary pair each variable with its column, so the two can be matched.
    std::string err;
    read_both(file, &err);
    EXPECT_NE(err.find("\n  idAttribute  @id       double"), std::string::npos) << err;
    const std::string detected = run_cli("detect " + file).out;
    EXPECT_NE(detected.find("\n  @id       idAttribute  double"), std::string::npos) << detected;
    // A union of rows: the rows' own text and their child title are both named title.
    EXPECT_EQ(read_both("examples/catalog.xml --row-selector '/catalog/book|/catalog/title' --head 0"),
              "title,id,author,title_2,genre,price,publish_date,description\n");
}

TEST(ReadCommand, HeadStopsReadingOnceItHasTheRows) {
    const auto broken = broken_file();
    // The sample ends well before the fault: only the streaming pass could reach it.
    const CliRun head = run_cli("read " + quote(broken) + " --sample-bytes 1KiB --head 3");
    EXPECT_EQ(head.exit_code, 0) << head.err;
    EXPECT_EQ(head.out, "a,b\n0,x0\n1,x1\n2,x2\n");
    EXPECT_NE(head.err.find("3 rows, 2 columns"), std::string::npos);

    const CliRun piped = run_cli("read - --sample-bytes 1KiB --head 2 --format jsonl", broken);
    EXPECT_EQ(piped.exit_code, 0) << piped.err;
    EXPECT_EQ(piped.out, "{\"a\":0,\"b\":\"x0\"}\n{\"a\":1,\"b\":\"x1\"}\n");
}

TEST(ReadCommand, MalformedDocumentFailsWithPlaceAndLeavesTheOutputFileAlone) {
    const auto broken = broken_file();
    const fs::path folder = fs::path(broken).parent_path();
    const std::string target = quote((folder / "out.csv").string());
    auto entries = [&] {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    };
    for (const std::string arguments : {"--sample-bytes 1KiB", "--no-stream"}) {
        const CliRun run = run_cli("read " + quote(broken) + " " + arguments);
        EXPECT_EQ(run.exit_code, 3) << arguments;
        EXPECT_NE(run.err.find("b.xml:302:18: the document is not well-formed XML"), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "") << arguments;
        EXPECT_EQ(run_cli("read " + quote(broken) + " " + arguments + " -o " + target).exit_code, 3);
        EXPECT_EQ(entries(), std::vector<std::string>{"b.xml"}) << arguments;
    }
    const CliRun piped = run_cli("read - --sample-bytes 1KiB", broken);
    EXPECT_NE(piped.err.find("<stdin>:302:18:"), std::string::npos) << piped.err;

    std::ofstream(folder / "out.csv") << "keep me\n";
    EXPECT_EQ(run_cli("read " + quote(broken) + " --sample-bytes 1KiB -o " + target).exit_code, 3);
    EXPECT_EQ(slurp((folder / "out.csv").string()), "keep me\n");
    EXPECT_EQ(entries(), (std::vector<std::string>{"b.xml", "out.csv"}));
}

TEST(ReadCommand, OutputThroughALinkOrToAPipeKeepsTheLinkAndThePipe) {
    const fs::path folder = fs::path(write_temp_file("real.csv", "old\n")).parent_path();
    const std::string real = (folder / "real.csv").string();
    fs::create_symlink(real, folder / "link.csv");
    const std::string expected = run_cli("read examples/key-value.xml").out;
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote((folder / "link.csv").string())).exit_code, 0);
    EXPECT_TRUE(fs::is_symlink(folder / "link.csv"));
    EXPECT_EQ(slurp(real), expected);

    // A replaced file keeps its permissions.
    fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote(real)).exit_code, 0);
    EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);

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
    // Positions count only the siblings of the same name (the catalog's title precedes the books).
    for (const std::string hint : {"'/catalog/book'", "'/catalog/book[2]'"}) {
        std::string err;
        read_both("examples/catalog.xml --row-selector " + hint, &err);
        EXPECT_EQ(err.find("note:"), std::string::npos) << hint << err;
    }
    struct Case {
        std::string hint, reason;
        int rows;
    };
    for (const Case& c : {Case{"'/catalog/book[price>5]'", "has a predicate other than a position '[price>5]'", 3},
                          Case{"'/catalog/book|/catalog/title'", "uses a union ('|')", 5},
                          Case{"'//book'", "uses the descendant axis ('//')", 4}}) {
        std::string err;
        const std::string out = read_both("examples/catalog.xml --format jsonl --row-selector " + c.hint, &err);
        EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), c.rows) << c.hint;
        EXPECT_NE(err.find("tolven-xml: note: the whole document is read into memory as a tree, since the row "
                           "selector "),
                  std::string::npos)
            << err;
        EXPECT_NE(err.find(c.reason), std::string::npos) << err;
    }
    // Each row of the union gets its own values, not the i-th of the whole document.
    const json rows = json::parse(
        run_cli("read examples/catalog.xml --format json --row-selector '/catalog/book|/catalog/title' --head 2").out);
    EXPECT_EQ(rows[0]["title"], "Spring list");
    EXPECT_TRUE(rows[0]["id"].is_null());
    EXPECT_EQ(rows[1]["id"], "bk101");
    EXPECT_EQ(rows[1]["title_2"], "XML Developer's Guide");
}

TEST(ReadCommand, VariableHintsMakeTheIthRowFromTheIthNodeOfEachSelector) {
    EXPECT_EQ(read_both("examples/catalog.xml --variable-selectors /catalog/book/author --variable-selectors "
                        "/catalog/book/@id --variable-selectors /catalog/title"),
              "author,id,title\n\"Gambardella, Matthew\",bk101,Spring list\n\"Ralls, Kim\",bk102,\n"
              "\"Corets, Eva\",bk103,\n\"Knorr, Stefan\",bk104,\n");
    // Nodes that share a repeating element are read within it: a row missing one variable shifts nothing.
    const auto file = write_temp_file("v.xml", "<t><r><a>1</a><b>x</b></r><r><b>y</b></r><r><a>3</a><b>z</b></r></t>");
    EXPECT_EQ(read_both(quote(file) + " --variable-node-names a,b"), "a,b\n1,x\n,y\n3,z\n");
}

TEST(ReadCommand, SummaryGoesToStandardErrorAndNoProgressBarOffATerminal) {
    const CliRun run = run_cli("read " + one_column_file(std::vector<std::string>(20000, "value")) +
                               " --sample-bytes 4KiB --format jsonl");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    EXPECT_EQ(run.err,
              "tolven-xml: 20000 rows, 2 columns\n"
              "  column  variable  type    missing  unconvertible  repeated\n"
              "  v       v         string        0              0         0\n"
              "  n       n         double        0              0         0\n");
    EXPECT_EQ(run.out.find("tolven-xml"), std::string::npos);
}

TEST(ReadCommand, LinesEndInLineFeedsOrWithCrlfInCarriageReturnLineFeeds) {
    const auto file = one_column_file({"two\nlines", "plain"});
    EXPECT_EQ(read_both(file), "v,n\n\"two\nlines\",1\nplain,1\n");
    // A line break inside a quoted value is the value's own, not a line end.
    EXPECT_EQ(read_both(file + " --crlf"), "v,n\r\n\"two\nlines\",1\r\nplain,1\r\n");
    EXPECT_EQ(read_both(file + " --crlf --format tsv"), "v\tn\r\n\"two\nlines\"\t1\r\nplain\t1\r\n");
}

TEST(ReadCommand, QuietSilencesNotesAndSummaryAndJsonSummaryIsForScripts) {
    const std::string falls_back = "read examples/catalog.xml --stream --row-selector //book";
    const CliRun plain = run_cli(falls_back);
    EXPECT_NE(plain.err.find("tolven-xml: note: the whole document is read"), std::string::npos) << plain.err;
    EXPECT_NE(plain.err.find("tolven-xml: 4 rows, 7 columns\n"), std::string::npos) << plain.err;
    const CliRun quiet = run_cli(falls_back + " -q");
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(quiet.out, plain.out);
    const CliRun no_summary = run_cli(falls_back + " --summary none");
    EXPECT_EQ(no_summary.err.find("rows,"), std::string::npos);
    EXPECT_NE(no_summary.err.find("note:"), std::string::npos);

    // JSON: standard error holds one object, the notes inside it; an explicit --summary beats -q.
    for (const std::string options : {" --summary json", " --summary json -q"}) {
        const json summary = json::parse(run_cli(falls_back + options).err);
        EXPECT_EQ(summary["Rows"], 4);
        EXPECT_EQ(summary["Columns"][0], json::parse(R"({"Name": "id", "Variable": "@id", "Type": "string",
            "Selector": "(//book)/@id", "Missing": 0, "Unconvertible": 0, "Repeated": 0})"));
        ASSERT_EQ(summary["Notes"].size(), 1u);
        EXPECT_NE(summary["Notes"][0].get<std::string>().find("uses the descendant axis"), std::string::npos);
    }
    const CliRun failed = run_cli("read " + quote(write_temp_file("one.xml", "<a><b>1</b></a>")) + " --summary json");
    EXPECT_EQ(failed.exit_code, 1);
    EXPECT_EQ(json::parse(failed.err)["Error"]["Identifier"], "TOLVEN:import:NoTableDetected");
}

TEST(ReadCommand, NoTableAndBadArgumentsAreReported) {
    const CliRun none = run_cli("read " + quote(write_temp_file("one.xml", "<a><b>1</b></a>")));
    EXPECT_EQ(none.exit_code, 1);
    EXPECT_NE(none.err.find("(TOLVEN:import:NoTableDetected)"), std::string::npos) << none.err;
    EXPECT_EQ(run_cli("read examples/catalog.xml --stream --no-stream").exit_code, 2);
}

TEST(ReadCommand, EitherPrefixOfAUriDeclaredTwiceWorksInSelectors) {
    const auto file = quote(write_temp_file(
        "two.xml", "<t xmlns:a='urn:u' xmlns:b='urn:u'><a:r><b:v>1</b:v></a:r><b:r><a:v>2</a:v></b:r></t>"));
    EXPECT_EQ(read_both(file), "b:v\n1\n2\n");
    EXPECT_EQ(read_both(file + " --row-selector /t/b:r"), "b:v\n1\n2\n");
    EXPECT_EQ(json::parse(run_cli("detect " + file + " --format json").out)["RegisteredNamespaces"],
              json::parse(R"([["a", "urn:u"], ["b", "urn:u"]])"));
}

}  // namespace
