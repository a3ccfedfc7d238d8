#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/support/run_cli.hpp"

namespace {

using nlohmann::json;
using tolven::testing::example;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

TEST(DetectCommand, JsonResultHasTheSevenFieldsInOrderForAFileOrStandardInput) {
    const auto run = run_cli("detect examples/catalog.xml --format json");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    // nlohmann::json sorts keys on parse: the order is checked on the text.
    std::size_t last = 0;
    for (const char* field : {"TableDetected", "TableSelector", "RowSelector", "VariableNames", "VariableTypes",
                              "VariableSelectors", "RegisteredNamespaces"}) {
        const std::size_t at = run.out.find('"' + std::string(field) + "\":");
        EXPECT_TRUE(at != std::string::npos && at > last) << field;
        last = at;
    }
    EXPECT_EQ(json::parse(run.out).size(), 7u);
    EXPECT_EQ(run_cli("detect - --format json", example("catalog.xml")).out, run.out);
}

TEST(DetectCommand, TwoHintsAreAnIdentifiedError) {
    const auto run = run_cli("detect examples/catalog.xml --table-node-name catalog --row-node-name book --format json");
    EXPECT_EQ(run.exit_code, 1);
    EXPECT_EQ(json::parse(run.out)["Error"]["Identifier"], "TOLVEN:io:xml:detection:ProvideAtMostOneDetectionHint");
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

TEST(DetectCommand, UsageErrorsExitWith2) {
    for (const char* arguments :
         {"detect examples/catalog.xml --format yaml", "detect examples/catalog.xml --register-namespace nouri",
          "frobnicate", ""})
        EXPECT_EQ(run_cli(arguments).exit_code, 2) << arguments;
}

TEST(DetectCommand, VerbosityLevelsAddProgressDumpsAndTraces) {
    EXPECT_EQ(run_cli("detect examples/catalog.xml").err, "");
    const auto v = run_cli("detect examples/catalog.xml -v");
    const std::size_t starting = v.err.find("Starting detection...");
    EXPECT_NE(starting, std::string::npos);
    EXPECT_EQ(v.err.find("Starting detection...", starting + 1), std::string::npos);
    EXPECT_EQ(v.err.find("DetectionOptions = "), std::string::npos);
    const auto vv = run_cli("detect examples/catalog.xml -vv");
    EXPECT_NE(vv.err.find("DetectionOptions = "), std::string::npos);
    EXPECT_EQ(vv.err.find("TableDetector::Detect() const"), std::string::npos);
    const auto vvv = run_cli("detect examples/catalog.xml -vvv --table-node-name catalog --row-node-name book");
    EXPECT_NE(vvv.err.find("TableDetector::Detect() const [throw]"), std::string::npos);
    EXPECT_EQ(vvv.err.find("Starting detection..."), std::string::npos);
}

TEST(DetectCommand, TextFormatAlignsColumnsByCharactersNotBytes) {
    const std::string doc =
        "<t xmlns:g='urn:g'><r><prix>1</prix><g:größe>2</g:größe></r><r><prix>3</prix><g:größe>4</g:größe></r></t>";
    const auto run = run_cli("detect " + write_temp_file("d.xml", doc) + " --format text");
    ASSERT_EQ(run.exit_code, 0) << run.err;
    // Each variable with the column name read gives it.
    EXPECT_NE(run.out.find("  variable  column   type    selector\n"
                           "  prix      prix     double  /t/r/prix\n"
                           "  g:größe   g:größe  double  /t/r/g:größe\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("Namespaces:     1\n  g  urn:g\n"), std::string::npos) << run.out;
}

TEST(DetectCommand, OutputThatCannotBeWrittenExitsWith1AndSaysSo) {
    for (const char* arguments : {"detect examples/catalog.xml", "detect examples/catalog.xml --format json",
                                  "detect examples/catalog.xml -v", "read examples/catalog.xml", "detect --help"}) {
        const auto run = run_cli(arguments, "", "/dev/full");
        EXPECT_EQ(run.exit_code, 1) << arguments;
        EXPECT_NE(run.err.find("Cannot write '<stdout>': No space left on device."), std::string::npos)
            << arguments << run.err;
    }
}

}  // namespace
