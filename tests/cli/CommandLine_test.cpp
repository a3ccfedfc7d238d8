// The command line as a whole: help, version, suggestions, standard input, option values, and the
// man page and completion made from the same definitions.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/support/run_cli.hpp"
#include "cli/support/run_in_pty.hpp"

namespace {

using nlohmann::json;
using tolven::testing::fresh_folder;
using tolven::testing::run_cli;
using tolven::testing::run_in_pty;
using tolven::testing::slurp;
using tolven::testing::write_temp_file;
namespace fs = std::filesystem;

TEST(CommandLine, HelpVersionAndSuggestions) {
    // --version and the version command say the same, as text or JSON.
    const auto version = run_cli("--version");
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_EQ(version.out, run_cli("version").out);
    const auto j = json::parse(run_cli("--version --format json").out);
    EXPECT_EQ(j, json::parse(run_cli("version --format json").out));
    EXPECT_EQ(version.out.rfind("tolven-xml " + j["Version"].get<std::string>() + "\nlibxml2 ", 0), 0u) << version.out;
    EXPECT_TRUE(j["Libraries"].contains("libxml2") && j["Libraries"].contains("ICU")) << j;

    struct Case {
        const char* arguments;
        int exit_code;
        const char* says;  // on standard output for help, on standard error otherwise
    };
    for (const Case& c : {Case{"--help", 0, "version"}, Case{"read --help", 0, "--crlf"},
                          Case{"detetc examples/catalog.xml", 2, "'detetc' is not a command; did you mean `detect`?"},
                          Case{"raed", 2, "did you mean `read`?"},
                          Case{"read --hed 3 examples/catalog.xml", 2, "unknown option '--hed'; did you mean `--head`?"},
                          Case{"detect --fromat=json examples/catalog.xml", 2, "did you mean `--format`?"},
                          Case{"detect examples/catalog.xml examples/feed.xml", 2, "unexpected argument 'examples/feed.xml'"},
                          Case{"", 2, "a command is required: detect, read, version"}}) {
        const auto run = run_cli(c.arguments);
        EXPECT_EQ(run.exit_code, c.exit_code) << c.arguments;
        EXPECT_NE((c.exit_code == 0 ? run.out : run.err).find(c.says), std::string::npos) << c.arguments << run.err;
    }
}

TEST(CommandLine, NoFileOnATerminalIsAUsageErrorAtOnceAndOptionsDoNotSwallowTheFile) {
    for (const char* command : {"detect", "read", "read --format json"}) {
        const auto run = run_in_pty(std::string("\"$TOLVEN\" ") + command, 10);
        EXPECT_EQ(run.exit_code, 2) << command << run.output;
        EXPECT_NE(run.output.find("no FILE given, and standard input is a terminal: give a FILE, or pipe a document"),
                  std::string::npos)
            << run.output;
    }
    // A terminal is fine when the document comes from a file or a pipe.
    EXPECT_EQ(run_in_pty("\"$TOLVEN\" detect examples/feed.xml").exit_code, 0);
    EXPECT_EQ(run_in_pty("\"$TOLVEN\" detect < examples/feed.xml").exit_code, 0);
    EXPECT_EQ(run_in_pty("cat examples/feed.xml | \"$TOLVEN\" read -q").exit_code, 0);
    // Options of several values take one value per occurrence (names also as NAME,NAME).
    const auto listed = run_in_pty("\"$TOLVEN\" read --variable-node-names title,price examples/catalog.xml -q", 10);
    EXPECT_EQ(listed.exit_code, 0) << listed.output;
    EXPECT_EQ(listed.output.rfind("title,price\r\n", 0), 0u) << listed.output;
    const auto repeated = run_cli("read --variable-selectors //book/title --variable-selectors //book/price examples/catalog.xml");
    EXPECT_EQ(repeated.out.substr(0, 12), "title,price\n") << repeated.err;
    const auto two = run_in_pty("\"$TOLVEN\" read --variable-selectors //book/title //book/price examples/catalog.xml", 10);
    EXPECT_EQ(two.exit_code, 2) << two.output;
    EXPECT_NE(two.output.find("repeat the option for several values"), std::string::npos) << two.output;
}

TEST(CommandLine, OptionValuesAreCheckedUpFront) {
    struct Case {
        const char* options;
        const char* says;  // "" when the value is good
    };
    for (const Case& c : {Case{"--head -1", "--head: must be a whole number of at least 0, not '-1'"},
                          Case{"--head 2.5", "not '2.5'"}, Case{"--head 99999999999999999999", "whole number"},
                          Case{"--head 0", ""}, Case{"--sample-bytes -5", "--sample-bytes: must be a size"},
                          Case{"--sample-bytes 0", "at least 1 byte"}, Case{"--sample-bytes 4XB", "not '4XB'"},
                          Case{"--sample-bytes 16EiB", "must be a size"}, Case{"--sample-bytes 1KiB", ""},
                          Case{"--sample-bytes 3m", ""}, Case{"--date-locale xx_YY", "'xx_YY' is not a locale ICU knows"},
                          Case{"--date-locale en_XX", "is not a locale"}, Case{"--date-locale de_DE", ""},
                          Case{"--date-locale fr-FR", ""}, Case{"--crlf --format jsonl", "--crlf: applies to"}}) {
        const auto run = run_cli(std::string("read examples/catalog.xml -q ") + c.options);
        EXPECT_EQ(run.exit_code, *c.says ? 2 : 0) << c.options << run.err;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << c.options << run.err;
        EXPECT_LT(run.err.size(), 200u) << run.err;  // one clear line, no range of 310 digits
    }
}

TEST(CommandLine, ManPageAndCompletionComeFromTheOptionsAndAreInstalled) {
    const std::string man = run_cli("--generate man").out;
    for (const char* command : {"detect", "read"}) {
        const std::string help = run_cli(std::string(command) + " --help").out;
        // Every --long-option of the help, with its hyphens as roff writes them.
        for (std::size_t at = help.find("--"); at != std::string::npos; at = help.find("--", at + 1)) {
            std::string in_roff;
            for (std::size_t i = at; i < help.size() && (help[i] == '-' || std::islower(static_cast<unsigned char>(help[i]))); ++i)
                in_roff += help[i] == '-' ? "\\-" : std::string(1, help[i]);
            EXPECT_NE(man.find(in_roff), std::string::npos) << in_roff;
        }
    }
    const std::string script = write_temp_file("c.bash", run_cli("--generate bash-completion").out);
    auto complete = [&](const std::string& words) {
        const std::string command = "bash -c '. " + script + "; COMP_WORDS=(" + words +
                                    "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tolven_xml; echo \"${COMPREPLY[*]}\"'";
        std::string out;
        FILE* pipe = ::popen(command.c_str(), "r");
        for (int c; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) out.push_back(static_cast<char>(c));
        if (pipe != nullptr) ::pclose(pipe);
        return out;
    };
    EXPECT_EQ(complete("tolven-xml de"), "detect\n");
    EXPECT_EQ(complete("tolven-xml read --for"), "--format\n");
    EXPECT_EQ(complete("tolven-xml read --format \"\""), "csv tsv jsonl json sqlite\n");
    EXPECT_EQ(complete("tolven-xml detect --import-attributes f"), "false\n");

    // The build made both from the same binary, and cmake --install puts them where tools look.
    const fs::path build = fs::path(TOLVEN_CLI_PATH).parent_path().parent_path();
    const fs::path prefix = fresh_folder();
    ASSERT_EQ(std::system(("cmake --install '" + build.string() + "' --prefix '" + prefix.string() + "' >/dev/null").c_str()), 0);
    EXPECT_EQ(slurp((prefix / "share/man/man1/tolven-xml.1").string()), man);
    EXPECT_EQ(slurp((prefix / "share/bash-completion/completions/tolven-xml").string()),
              run_cli("--generate bash-completion").out);
    EXPECT_TRUE(fs::exists(prefix / "bin/tolven-xml"));
    fs::remove_all(prefix);
}

}  // namespace
