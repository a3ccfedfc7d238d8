// Hints files: any subset of the fifteen fields, detect's own output fed back, and every fault a
// usage error that names the field.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

std::string hints(const std::string& content) { return " --hints '" + write_temp_file("h.json", content) + "'"; }

TEST(HintsFile, DetectOutputFedBackFindsTheSameTable) {
    for (const char* name : {"catalog.xml", "atom-feed.xml", "feed.xml", "key-value.xml"}) {
        const std::string file = std::string("examples/") + name;
        const auto detected = run_cli("detect " + file + " --format json");
        const std::string fed_back = hints(detected.out);
        for (const char* mode : {"--stream", "--no-stream"})
            EXPECT_EQ(run_cli("read " + file + fed_back + " -q " + mode).out, run_cli("read " + file).out) << name;
        const json again = json::parse(run_cli("detect " + file + fed_back + " --format json").out);
        const json first = json::parse(detected.out);
        for (const char* field : {"TableDetected", "VariableNames", "VariableTypes", "RegisteredNamespaces"})
            EXPECT_EQ(again[field], first[field]) << name << " " << field;
    }
    // Import settings may stand beside the result.
    json with_locale = json::parse(run_cli("detect examples/feed.xml --format json").out);
    with_locale["DateLocale"] = "de_DE";
    EXPECT_EQ(run_cli("read examples/feed.xml -q" + hints(with_locale.dump())).exit_code, 0);
}

TEST(HintsFile, FieldsLeftOutTakeTheDefaultsAndOptionsWin) {
    const std::string doc = "'" + write_temp_file("n.xml", "<t><r id='1'><id>a</id></r><r id='2'><id>b</id></r></t>") + "'";
    EXPECT_EQ(run_cli("read " + doc + hints("{}")).out, "idAttribute,id\n1,a\n2,b\n");
    EXPECT_EQ(run_cli("read " + doc + hints(R"({"AttributeSuffix": "_f", "TableSelector": null})")).out, "id_f,id\n1,a\n2,b\n");
    EXPECT_EQ(run_cli("read " + doc + hints(R"({"AttributeSuffix": "_f"})") + " --attribute-suffix _o").out,
              "id_o,id\n1,a\n2,b\n");
    EXPECT_EQ(run_cli("read " + doc + hints(R"({"ImportAttributes": false, "RowNodeName": "r"})")).out, "id\na\nb\n");
    const auto namespaces = [&](const std::string& options) {
        return json::parse(run_cli("detect examples/catalog.xml --format json" + options +
                                   hints(R"({"RegisteredNamespaces": [["c", "urn:c"]]})")).out)["RegisteredNamespaces"];
    };
    EXPECT_EQ(namespaces(""), json::parse(R"([["c", "urn:c"]])"));
    EXPECT_EQ(namespaces(" --register-namespace d=urn:d"), json::parse(R"([["d", "urn:d"]])"));
}

TEST(HintsFile, AnUnusableFileIsAUsageErrorNamingTheFieldAndTheReason) {
    struct Case {
        std::string content, reason;
    };
    for (const Case& c : {Case{R"({"ImportAttributes": 42})", "field \"ImportAttributes\" must be true or false, not 42"},
                          Case{R"({"TableSelector": 42})", "field \"TableSelector\" must be a string, not 42"},
                          Case{R"({"VariableSelectors": "//a"})", "field \"VariableSelectors\" must be a list of strings"},
                          Case{R"({"VariableSelectors": ["//a", null]})", "entry 2 of field \"VariableSelectors\" must be a string, not null"},
                          Case{R"({"RegisteredNamespaces": [["a"]]})", "field \"RegisteredNamespaces\" must be a list of [prefix, uri] pairs"},
                          Case{R"({"DateLocale": "xx_YY"})", "field \"DateLocale\": 'xx_YY' is not a locale"},
                          Case{R"({"RowSelecter": "/a"})", "unknown field \"RowSelecter\"; did you mean `RowSelector`?"},
                          Case{R"({"TableDetected": false})", "detect result that found no table"},
                          Case{R"({"TableDetected": true, "RowNodeName": "b"})", "field \"RowNodeName\" cannot be combined"},
                          Case{"[1]", "one JSON object"}, Case{"{\"a\": ", "not valid JSON: parse error at line 1"}}) {
        const auto run = run_cli("detect examples/catalog.xml --format json" + hints(c.content));
        EXPECT_EQ(run.exit_code, 2) << c.content;
        const json error = json::parse(run.out)["Error"];
        EXPECT_EQ(error["Identifier"], "TOLVEN:cli:InvalidHintsFile");
        EXPECT_NE(error["Arguments"][1].get<std::string>().find(c.reason), std::string::npos) << error;
    }
    const auto missing = run_cli("read examples/catalog.xml --hints no/such.json");
    EXPECT_EQ(missing.exit_code, 2);
    EXPECT_NE(missing.err.find("The hints file 'no/such.json' is invalid: No such file or directory"), std::string::npos)
        << missing.err;
}

}  // namespace
