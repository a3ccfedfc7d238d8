// Columns that first appear past the sample a large input is detected on: detect and read find them
// by a pass over the whole input, and name, type and address them as detection on the whole tree does.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <tuple>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::CliRun;
using tolven::testing::example;
using tolven::testing::fresh_folder;
using tolven::testing::run_cli;
using tolven::testing::slurp;
using tolven::testing::write_temp_file;

using Variables = std::set<std::tuple<std::string, std::string, std::string>>;

Variables variables_of(const CliRun& run) {
    EXPECT_EQ(run.exit_code, 0) << run.err;
    const json j = json::parse(run.out);
    Variables out;
    for (std::size_t i = 0; i < j["VariableNames"].size(); ++i)
        out.emplace(j["VariableNames"][i], j["VariableTypes"][i], j["VariableSelectors"][i]);
    return out;
}

// 400 rows of some 70 bytes; the row holding extra (inside its start tag when it begins with a
// space) is row `at`.
std::string catalog(const std::string& extra, int at) {
    std::string xml = "<?xml version=\"1.0\"?>\n<catalog>\n";
    for (int i = 0; i < 400; ++i) {
        const std::string n = std::to_string(i);
        const bool here = i == at;
        const bool attribute = here && extra.front() == ' ';
        xml += "  <item id=\"" + n + "\"" + (attribute ? extra : "") + "><name>n" + n + "</name><price>" + n +
               ".5</price>" + (here && !attribute ? extra : "") + "</item>\n";
    }
    return xml + "</catalog>\n";
}

struct Late {
    const char* what;
    const char* extra;
    const char* column;  // as the CSV header has it
    const char* value;
};

TEST(LateColumns, AColumnPastTheSampleIsFoundAsTheTreeFindsItInTheFirstRow) {
    const Late cases[] = {
        {"element", "<late>3.5</late>", "late", "3.5"},
        {"attribute", " code=\"x1\"", "code", "x1"},
        {"nested element", "<info><when>2024-01-02</when></info>", "when", "2024-01-02"},
        {"element in a namespace declared late", "<x:extra xmlns:x=\"urn:x\">7</x:extra>", "x:extra", "7"},
    };
    for (const Late& c : cases) {
        const std::string early = write_temp_file("early.xml", catalog(c.extra, 0));
        const std::string late = write_temp_file("late.xml", catalog(c.extra, 350));
        const CliRun tree = run_cli("detect " + early + " --format json");
        const CliRun streamed = run_cli("detect " + late + " --sample-bytes 2k --format json");
        EXPECT_EQ(variables_of(streamed), variables_of(tree)) << c.what;
        EXPECT_EQ(json::parse(streamed.out)["RegisteredNamespaces"], json::parse(tree.out)["RegisteredNamespaces"])
            << c.what;
        EXPECT_NE(streamed.err.find("first appears past the sample"), std::string::npos) << c.what;

        // read writes it, in the row it is in.
        const CliRun read = run_cli("read " + late + " --sample-bytes 2k -q");
        ASSERT_EQ(read.exit_code, 0) << c.what << read.err;
        const std::string header = read.out.substr(0, read.out.find('\n'));
        EXPECT_EQ(header, std::string("id,name,price,") + c.column) << c.what;
        EXPECT_NE(read.out.find("\n350,n350,350.5," + std::string(c.value) + "\n"), std::string::npos) << c.what;
        // Standard output is a file here, as -o makes one: the import meets the column, cuts the file
        // back and runs again with it.
        const std::string csv = (fresh_folder() / "late.csv").string();
        EXPECT_EQ(run_cli("read " + late + " --sample-bytes 2k -q -o " + csv).exit_code, 0);
        EXPECT_EQ(slurp(csv), read.out) << c.what;
        // Nothing sent to the null device needs taking back: the one import simply runs again.
        const CliRun discarded = run_cli("read " + late + " --sample-bytes 2k --summary json -o /dev/null");
        EXPECT_EQ(json::parse(discarded.err)["Columns"].back()["Name"], c.column) << c.what << discarded.err;
    }
}

TEST(LateColumns, DetectStreamedAgreesWithTheTreeOnTheExamples) {
    for (const char* name : {"catalog.xml", "feed.xml", "atom-feed.xml", "sensor-log.xml", "key-value.xml"}) {
        const CliRun tree = run_cli("detect " + example(name) + " --no-stream --format json");
        for (const char* sample : {"", " --sample-bytes 1k"}) {
            const CliRun streamed = run_cli("detect " + example(name) + " --stream" + sample + " --format json");
            EXPECT_EQ(variables_of(streamed), variables_of(tree)) << name << sample;
        }
    }
}

TEST(LateColumns, StandardInputIsReadOnceSoDetectFindsTheColumnAndReadWarnsOfIt) {
    const std::string late = write_temp_file("late.xml", catalog("<late>3.5</late>", 350));
    const Variables found = variables_of(run_cli("detect - --sample-bytes 2k --format json", late));
    EXPECT_EQ(found.count({"late", "double", "/catalog/item/late"}), 1u);

    const CliRun read = run_cli("read - --sample-bytes 2k", late);
    ASSERT_EQ(read.exit_code, 0) << read.err;
    EXPECT_EQ(read.out.substr(0, read.out.find('\n')), "id,name,price");
    const std::string warning = "warning: column 'late' (/catalog/item/late) first appears in row 351";
    const std::size_t at = read.err.find(warning);
    ASSERT_NE(at, std::string::npos) << read.err;
    EXPECT_EQ(read.err.find(warning, at + 1), std::string::npos) << "warned once";
    EXPECT_NE(read.err.find("read the file", at), std::string::npos);
}

}  // namespace
