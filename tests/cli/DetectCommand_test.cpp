#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::example;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

TEST(DetectCommand, JsonResultHasTheSevenFieldsInOrder) {
    const auto run = run_cli("detect examples/catalog.xml --format json");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    const auto j = json::parse(run.out);
    std::vector<std::string> keys;
    for (const auto& [key, value] : j.items()) keys.push_back(key);
    // nlohmann::json sorts keys on parse; presence and kinds are what matter here.
    for (const char* field : {"TableDetected", "TableSelector", "RowSelector", "VariableNames", "VariableTypes",
                              "VariableSelectors", "RegisteredNamespaces"})
        EXPECT_TRUE(j.contains(field)) << field;
    EXPECT_TRUE(j["TableDetected"].is_boolean());
    EXPECT_TRUE(j["VariableNames"].is_array());
    EXPECT_EQ(run.out.find("\"TableDetected\""), run.out.find('"'));  // first key as written
}

TEST(DetectCommand, TwoHintsAreAnIdentifiedError) {
    const auto run = run_cli("detect examples/catalog.xml --table-node-name catalog --row-node-name book --format json");
    EXPECT_EQ(run.exit_code, 1);
    const auto j = json::parse(run.out);
    EXPECT_EQ(j["Error"]["Identifier"], "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
    EXPECT_EQ(j["Error"]["Arguments"], json::array());
    EXPECT_FALSE(j["Error"]["Message"].get<std::string>().empty());

    const auto text = run_cli("detect examples/catalog.xml --table-node-name catalog --row-node-name book");
    EXPECT_EQ(text.exit_code, 1);
    EXPECT_NE(text.err.find("(TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint)"), std::string::npos);
}

TEST(DetectCommand, HintsFileIsPassedAsItIs) {
    const std::string complete = R"({"TableNodeName": "", "RowNodeName": "", "VariableNodeNames": [],
        "TableSelector": "", "RowSelector": "", "VariableSelectors": [], "AttributeSuffix": "Attribute",
        "DateLocale": "en_US", "ImportAttributes": true, "DetectNamespaces": true,
        "RegisteredNamespaces": [["c", "urn:c"]], "DecimalSeparator": ".", "ThousandsSeparator": "",
        "ExponentCharacter": "eEdD", "TrimNonnumeric": false})";
    const auto ok = run_cli("detect examples/catalog.xml --format json --hints " + write_temp_file("h.json", complete));
    ASSERT_EQ(ok.exit_code, 0) << ok.out << ok.err;
    EXPECT_EQ(json::parse(ok.out)["RegisteredNamespaces"], json::parse(R"([["c", "urn:c"]])"));

    // No defaults are filled in: a field the file lacks cannot be read.
    std::string lacking = complete;
    lacking.replace(lacking.find(", \"TrimNonnumeric\": false"), 25, "");
    const auto missing = run_cli("detect examples/catalog.xml --format json --hints " + write_temp_file("h.json", lacking));
    EXPECT_EQ(missing.exit_code, 1);
    EXPECT_EQ(json::parse(missing.out)["Error"]["Identifier"], "TOLVEN:io:xml:common:UnknownError");

    // Options beside the file replace its fields.
    const auto replaced = run_cli("detect examples/catalog.xml --format json --register-namespace d=urn:d --hints " +
                                  write_temp_file("h.json", complete));
    EXPECT_EQ(json::parse(replaced.out)["RegisteredNamespaces"], json::parse(R"([["d", "urn:d"]])"));

    // A null inside a list is a missing string.
    std::string with_null = complete;
    with_null.replace(with_null.find("\"VariableSelectors\": []"), 23, "\"VariableSelectors\": [\"//a\", null]");
    const auto null_run = run_cli("detect examples/catalog.xml --format json --hints " + write_temp_file("h.json", with_null));
    EXPECT_EQ(json::parse(null_run.out)["Error"]["Identifier"], "TOLVEN:string:MissingNotSupported");

    const auto broken = run_cli("detect examples/catalog.xml --format json --hints " + write_temp_file("h.json", "{not json"));
    EXPECT_EQ(broken.exit_code, 2);
    EXPECT_EQ(json::parse(broken.out)["Error"]["Identifier"], "TOLVEN:cli:InvalidHintsFile");
}

TEST(DetectCommand, MalformedOrUnreadableInputExitsWith3AndSaysWhere) {
    const auto bad = write_temp_file("bad.xml", "<a>\n  <b>text</a>\n");
    const auto run = run_cli("detect '" + bad + "' --format json");
    EXPECT_EQ(run.exit_code, 3);
    const auto j = json::parse(run.out);
    EXPECT_EQ(j["Error"]["Identifier"], "TOLVEN:io:xml:common:MalformedDocument");
    EXPECT_EQ(j["Error"]["Arguments"][0], bad);
    EXPECT_EQ(j["Error"]["Arguments"][1], "2");

    const auto missing = run_cli("detect no/such/file.xml");
    EXPECT_EQ(missing.exit_code, 3);
    EXPECT_NE(missing.err.find("TOLVEN:io:xml:common:FileNotReadable"), std::string::npos);
}

TEST(DetectCommand, ReadsStandardInput) {
    const auto run = run_cli("detect - --format json", example("catalog.xml"));
    EXPECT_EQ(run.exit_code, 0) << run.err;
    EXPECT_TRUE(json::parse(run.out).contains("TableDetected"));
}

TEST(DetectCommand, UsageErrorsExitWith2) {
    EXPECT_EQ(run_cli("detect examples/catalog.xml --format yaml").exit_code, 2);
    EXPECT_EQ(run_cli("detect examples/catalog.xml --register-namespace nouri").exit_code, 2);
    EXPECT_EQ(run_cli("frobnicate").exit_code, 2);
    EXPECT_EQ(run_cli("").exit_code, 2);
    const auto help = run_cli("detect --help");
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_NE(help.out.find("--row-selector"), std::string::npos);
    EXPECT_NE(run_cli("--help").out.find("Exit codes"), std::string::npos);
}

TEST(DetectCommand, VerbosityLevelsAddProgressDumpsAndTraces) {
    const auto quiet = run_cli("detect examples/catalog.xml");
    EXPECT_EQ(quiet.err, "");
    const auto v = run_cli("detect examples/catalog.xml -v");
    EXPECT_NE(v.err.find("Starting detection..."), std::string::npos);
    EXPECT_EQ(v.err.find("DetectionOptions = "), std::string::npos);
    const auto vv = run_cli("detect examples/catalog.xml -vv");
    EXPECT_NE(vv.err.find("DetectionOptions = "), std::string::npos);
    EXPECT_EQ(vv.err.find("TableDetector::Detect() const"), std::string::npos);
    const auto vvv = run_cli("detect examples/catalog.xml -vvv --table-node-name catalog --row-node-name book");
    EXPECT_NE(vvv.err.find("TableDetector::Detect() const [throw]"), std::string::npos);
    EXPECT_EQ(vvv.err.find("Starting detection..."), std::string::npos);
}

}  // namespace

namespace {

TEST(DetectCommand, TextFormatAlignsColumnsByCharactersNotBytes) {
    const std::string doc =
        "<t xmlns:g='urn:g'><r><prix>1</prix><g:größe>2</g:größe></r><r><prix>3</prix><g:größe>4</g:größe></r></t>";
    const auto run = run_cli("detect " + write_temp_file("d.xml", doc) + " --format text");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    EXPECT_NE(run.out.find("  prix     double  /t/r/prix\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  g:größe  double  /t/r/g:größe\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Namespaces:     1\n  g  urn:g\n"), std::string::npos) << run.out;
}

}  // namespace
