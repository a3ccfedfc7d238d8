// read never changes or drops a value without saying so: one test per rule, each on small
// documents through both the tree and the streaming path.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::CliRun;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

std::string quote(const std::string& s) { return "'" + s + "'"; }

// A document of rows <r>...</r>, each given by its inner XML.
std::string rows_file(const std::vector<std::string>& rows) {
    std::string xml = "<t>\n";
    for (const auto& r : rows) xml += "  <r>" + r + "</r>\n";
    return quote(write_temp_file("f.xml", xml + "</t>\n"));
}

// Reads with both paths, expects the same output and standard error (but for notes on the path
// taken), and returns the output; the standard error goes to err.
std::string read_both(const std::string& arguments, std::string* err = nullptr) {
    const CliRun stream = run_cli("read " + arguments + " --stream");
    const CliRun tree = run_cli("read " + arguments + " --no-stream");
    EXPECT_EQ(stream.exit_code, 0) << arguments << "\n" << stream.err;
    EXPECT_EQ(tree.exit_code, 0) << arguments << "\n" << tree.err;
    EXPECT_EQ(stream.out, tree.out) << arguments;
    if (stream.err.find("read into memory as a tree") == std::string::npos) {
        EXPECT_EQ(stream.err, tree.err);
    }
    if (err != nullptr) *err = tree.err;
    return tree.out;
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(ReadFidelity, EachDateColumnReadsInOneOrder) {
    struct Case {
        std::vector<std::string> dates;
        std::string options, csv, note;
    };
    const std::vector<Case> cases = {
        // A first field above 12 decides for the whole column, whatever the locale.
        {{"12/03/2024", "13/03/2024"}, "", "d\n2024-03-12\n2024-03-13\n", ""},
        {{"03/12/2024", "03/13/2024"}, "--date-locale de_DE", "d\n2024-03-12\n2024-03-13\n", ""},
        // Otherwise the locale decides, and says so.
        {{"03/04/2024", "05/06/2024"}, "", "d\n2024-03-04\n2024-05-06\n",
         "note: column 'd': dates such as '03/04/2024' are read month first, as --date-locale en_US reads them"},
        {{"03/04/2024", "05/06/2024"}, "--date-locale en_GB", "d\n2024-04-03\n2024-06-05\n", "read day first"},
        // Nobody writes month.day.year.
        {{"04.03.2024", "05.03.2024 10:30"}, "", "d\n2024-03-04\n2024-03-05T10:30:00\n", ""},
        // By hand, in strftime's letters.
        {{"03/04/24", "12/31/99"}, "--date-format d=%m/%d/%y", "d\n2024-03-04\n1999-12-31\n", ""},
        {{"05/03/2024", "4 Mar 2024"}, "--date-format d=%d/%m/%Y", "d\n2024-03-05\n4 Mar 2024\n",
         "warning: column 'd': 1 value does not convert to datetime"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> rows;
        for (const auto& d : c.dates) rows.push_back("<d>" + d + "</d>");
        std::string err;
        EXPECT_EQ(read_both(rows_file(rows) + " " + c.options, &err), c.csv) << c.options;
        EXPECT_TRUE(has(err, c.note)) << err;
    }
    // Once the order is decided, a value that reads only the other way does not convert: it is
    // written as it stands and announced.
    std::string err;
    EXPECT_EQ(read_both(rows_file({"<d>13/03/2024</d>", "<d>01/02/2024</d>", "<d>03/14/2024</d>"}), &err),
              "d\n2024-03-13\n2024-02-01\n03/14/2024\n");
    EXPECT_TRUE(has(err, "warning: column 'd': 1 value does not convert to datetime")) << err;
}

TEST(ReadFidelity, NumbersKeepTheirDigits) {
    const auto file = rows_file({
        "<zip>02110</zip><id>1000000</id><big>1234567890123456789</big><max>18446744073709551615</max><x>1e3</x>",
        "<zip>10001</zip><id>2</id><big>123456789012345678901234567890</big><max>0</max><x>2.50</x>",
        "<zip>0</zip><id>3.000</id><big>-9007199254740993</big><max>7</max><x>1.5e-7</x>",
    });
    std::string err;
    EXPECT_EQ(read_both(file, &err), "zip,id,big,max,x\n"
                                     "02110,1000000,1234567890123456789,18446744073709551615,1000\n"
                                     "10001,2,123456789012345678901234567890,0,2.5\n"
                                     "0,3,-9007199254740993,7,1.5e-07\n");
    // A column whose numbers carry leading zeros is text, and the note says how to read it as numbers.
    EXPECT_TRUE(has(err, "note: column 'zip' is written as text, not double: its values carry leading zeros "
                         "(the first, '02110', in row 1); give --type zip=double")) << err;
    const json rows = json::parse(read_both(file + " --format json"));
    EXPECT_EQ(rows[0]["zip"], "02110");
    EXPECT_EQ(rows[0]["big"].dump(), "1234567890123456789");
    EXPECT_EQ(rows[0]["max"].dump(), "18446744073709551615");
    EXPECT_EQ(read_both(file + " --type zip=double --head 1"), "zip,id,big,max,x\n2110,1000000,1234567890123456789,"
                                                                "18446744073709551615,1000\n");
}

// Plain decimals and integers at the edges of what is copied as written: trailing zeros, digits
// beyond a double, signs, points without digits; fields with and without characters to quote.
TEST(ReadFidelity, PlainNumbersAndFieldsAreWrittenByTheSameRules) {
    const std::vector<std::array<std::string, 3>> rows = {
        {"44.95", "42", "a"}, {"-0.0", "-0", "b,c"}, {"51.0000000", "-9223372036854775808", "say \"hi\""},
        {"0.000100", "123456789012345678", "x"}, {"123456789.012345", "+7", "y"},
        {"1234567890.1234567", "9223372036854775807", "a long text without specials"},
        {"0.1000000000000000055511151231257827", "0", "line\nbreak"}, {"5.", "1", "tab\tinside"},
        {"+3.25", "2", "q"}, {".5", "3", "q"}, {"12345678901234567890123", "4", "q"}, {"-00.5", "5", "q"},
    };
    std::vector<std::string> inner;
    for (const auto& [d, i, s] : rows) inner.push_back("<d>" + d + "</d><i>" + i + "</i><s>" + s + "</s>");
    const std::string file = rows_file(inner) + " --type d=double";
    const std::string values =
        "44.95,42,a\n-0,0,\"b,c\"\n51,-9223372036854775808,\"say \"\"hi\"\"\"\n0.0001,123456789012345678,x\n"
        "123456789.012345,7,y\n1234567890.1234567,9223372036854775807,a long text without specials\n"
        "0.1,0,\"line\nbreak\"\n5,1,tab\tinside\n3.25,2,q\n0.5,3,q\n12345678901234567890123,4,q\n-0.5,5,q\n";
    EXPECT_EQ(read_both(file + " --type i=int64"), "d,i,s\n" + values);
    std::string err;
    EXPECT_EQ(read_both(file + " --type i=int8", &err), "d,i,s\n" + values);
    EXPECT_TRUE(has(err, "column 'i': 3 values do not convert to int8")) << err;
    EXPECT_TRUE(has(read_both(file + " --type i=int64 --format tsv"), "\n5\t1\t\"tab\tinside\"\n3.25\t2\tq\n"));
}

TEST(ReadFidelity, ValuesThatDoNotConvertAreWrittenAsTheyStandAndAnnounced) {
    const auto file = rows_file({"<code>1</code>", "<code>2</code>", "<code>X3</code>", "<code>X4</code>"});
    std::string err;
    EXPECT_EQ(read_both(file, &err), "code\n1\n2\nX3\nX4\n");
    EXPECT_TRUE(has(err, "tolven-xml: warning: column 'code': 2 values do not convert to double and are written as "
                         "they stand (the first, 'X3', in row 3); --type code=string imports the column as text\n"))
        << err;
    EXPECT_EQ(json::parse(read_both(file + " --format json"))[2]["code"], "X3");
    EXPECT_EQ(json::parse(read_both(file + " --format json --type code=string"))[0]["code"], "1");
    EXPECT_EQ(json::parse(read_both(file + " --format json --raw"))[0]["code"], "1");

    // --strict: an identified error naming column, row and value, and no output file.
    const std::string out = (std::filesystem::path(file.substr(1, file.size() - 2)).parent_path() / "o.csv").string();
    for (const char* path : {"--stream", "--no-stream"}) {
        const CliRun run = run_cli("read " + file + " --strict " + path + " -o " + quote(out));
        EXPECT_EQ(run.exit_code, 1);
        EXPECT_TRUE(has(run.err, "Column 'code', row 3: the value 'X3' does not convert to double")) << run.err;
        EXPECT_TRUE(has(run.err, "(TOLVEN:import:UnconvertibleValue)")) << run.err;
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    // Options naming what the table does not have are errors; bad values, usage errors.
    EXPECT_EQ(run_cli("read " + file + " --type nope=string").exit_code, 1);
    EXPECT_EQ(run_cli("read " + file + " --type code=text").exit_code, 2);
    EXPECT_EQ(run_cli("read " + file + " --date-format code=%d/%m").exit_code, 2);
}

TEST(ReadFidelity, AnElementsValueIsAllItsText) {
    const auto file = rows_file({"<s>Tap <b>Start</b> when ready.</s><n>1</n>",
                                 "<s>  a <![CDATA[<b>]]><!-- gone --> <i>c<u>d</u></i>  </s><n>2</n>"});
    EXPECT_EQ(read_both(file + " --variable-node-names s"), "s\nTap Start when ready.\na <b> cd\n");
}

TEST(ReadFidelity, RepeatedChildrenAreKeptOrAnnounced) {
    const auto file = rows_file({"<id>1</id><tag>a</tag><tag>b</tag><n>1</n><n>2</n>", "<id>2</id><tag>c</tag>",
                                 "<id>3</id><tag>d, e</tag><tag>f</tag>"});
    std::string err;
    EXPECT_EQ(read_both(file, &err), "id,tag,n\n1,a,1\n2,c,\n3,\"d, e\",\n");
    EXPECT_TRUE(has(err, "warning: column 'tag': 2 rows hold more than one value, of which only the first is "
                         "written; --repeated all writes every value\n")) << err;
    EXPECT_TRUE(has(err, "warning: column 'n': 1 row holds more than one value")) << err;
    EXPECT_EQ(read_both(file + " --repeated all", &err), "id,tag,n\n1,a; b,1; 2\n2,c,\n3,\"d, e; f\",\n");
    EXPECT_FALSE(has(err, "warning")) << err;
    EXPECT_EQ(json::parse(read_both(file + " --repeated all --format json")), json::parse(R"([
        {"id": 1, "tag": ["a", "b"], "n": [1, 2]}, {"id": 2, "tag": "c", "n": null},
        {"id": 3, "tag": ["d, e", "f"], "n": null}])"));
}

TEST(ReadFidelity, VariableHintsTakeEachValueWithinItsRow) {
    const auto file = quote(write_temp_file("b.xml", R"(<catalog><title>List</title>
  <book id="1"><title>A</title><price>1.5</price></book>
  <book id="2"><title>B</title></book>
  <book id="3"><title>C</title><price>3.5</price></book>
  <magazine><title>M</title><price>9</price></magazine></catalog>)"));
    std::string err;
    // One book without a price shifts nothing; the magazine is no book.
    EXPECT_EQ(read_both(file + " --variable-selectors /catalog/book/title --variable-selectors /catalog/book/price --variable-selectors /catalog/book/@id", &err),
              "title,price,id\nA,1.5,1\nB,,2\nC,3.5,3\n");
    EXPECT_EQ(read_both(file + " --variable-selectors //book/title --variable-selectors //book/price"), "title,price\nA,1.5\nB,\nC,3.5\n");
    EXPECT_FALSE(has(err, "note:")) << err;
    // No element holds one of each: the i-th nodes make row i, with a note.
    EXPECT_EQ(read_both(file + " --variable-selectors /catalog/book/title --variable-selectors /catalog/magazine/price", &err),
              "title,price\nA,9\nB,\nC,\n");
    EXPECT_TRUE(has(err, "note: the variables' nodes share no repeating element")) << err;
    // Namespaces without a bound prefix.
    const std::string entry = "/*[local-name()='feed']/*[local-name()='entry']/*[local-name()=";
    EXPECT_EQ(read_both("examples/atom-feed.xml --detect-namespaces false --variable-selectors \"" + entry +
                        "'title']\" --variable-selectors \"" + entry + "'id']\" --head 1"),
              "title,id\nNorth pier,urn:sensor:1\n");
}

}  // namespace
