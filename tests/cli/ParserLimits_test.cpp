// Hostile documents and inputs: every path (the tree, the stream past the sample, detect) refuses
// them alike, and input that never ends, or is not XML, is refused without being read whole.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "cli/support/run_cli.hpp"

namespace {

using tolven::testing::CliRun;
using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

// s as one shell word.
std::string quote(const std::string& s) {
    std::string quoted = "'";
    for (const char c : s) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string repeat(const std::string& s, int n) {
    std::string all;
    for (int i = 0; i < n; ++i) all += s;
    return all;
}

// Rows well past a sample of 4 KiB, then the hazard in the last row's value, on line 301 after the prolog.
std::string table_with(const std::string& prolog, const std::string& hazard, const std::string& after = "") {
    std::string xml = prolog + "<t>\n";
    for (int i = 0; i < 299; ++i) xml += "<r><a>" + std::to_string(i) + "</a><b>x</b></r>\n";
    return xml + "<r><a>1</a><b>" + hazard + "</b></r>\n</t>\n" + after;
}

// A DOCTYPE whose entity e<levels> expands to 10^levels copies of "lol".
std::string laughs(int levels) {
    std::string dtd = "<!DOCTYPE t [<!ENTITY e0 \"lol\">";
    for (int i = 1; i <= levels; ++i) {
        dtd += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k) dtd += "&e" + std::to_string(i - 1) + ";";
        dtd += "\">";
    }
    return dtd + "]>\n";
}

// Runs script with bash in the source folder, $T naming tolven-xml; returns its exit status and output.
CliRun run_shell(const std::string& script) {
    const std::string out = write_temp_file("out", ""), err = write_temp_file("err", "");
    const std::string command = std::string("cd '") + TOLVEN_SOURCE_DIR + "' && T='" + TOLVEN_CLI_PATH +
                                "' bash -c " + quote(script) + " >" + quote(out) + " 2>" + quote(err) + " </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, tolven::testing::slurp(out), tolven::testing::slurp(err)};
}

TEST(ParserLimits, EveryPathRefusesAHostileDocumentWithTheSameErrorAndPlace) {
    struct Case {
        const char* what;
        std::string xml;
        std::string where;  // line:column
        std::string message;
    };
    const std::string quadratic = "<!DOCTYPE t [<!ENTITY a \"" + std::string(3000, 'x') + "\">]>\n";
    const Case cases[] = {
        {"depth", table_with("", repeat("<x>", 300) + repeat("</x>", 300)), "301:776",
         "elements are nested deeper than 256 levels; pass --huge to allow deeper documents"},
        {"huge text node", table_with("", std::string(10'000'001, 'y')), "301:14",
         "a text node is longer than 10,000,000 bytes; pass --huge to allow longer text"},
        {"laughs early", laughs(7) + "<t><r><a>1</a><b>&e7;</b></r><r><a>2</a><b>x</b></r></t>", "2:22",
         "the entity reference '&e7;' expands too far"},
        {"laughs past the sample", table_with(laughs(7), "&e7;"), "302:19",
         "the entity reference '&e7;' expands too far"},
        // Each reference in an element of its own: a tree then copies them without merging their text.
        {"quadratic blowup", table_with(quadratic, repeat("<x>&a;</x>", 3500)), "302:33291",
         "the entity reference '&a;' expands too far"},
        {"entity loop", table_with("<!DOCTYPE t [<!ENTITY a \"x&b;\"><!ENTITY b \"y&a;\">]>\n", "&a;"), "302:18",
         "the entity reference '&a;' expands too far: an entity refers to itself"},
        {"zero bytes after the root", table_with("", "z", std::string(3, '\0')), "303:1",
         "Extra content at the end of the document"},
    };
    for (const Case& c : cases) {
        const std::string file = quote(write_temp_file("h.xml", c.xml));
        const CliRun stream = run_cli("read " + file + " --stream --sample-bytes 4KiB");
        const CliRun tree = run_cli("read " + file + " --no-stream");
        const CliRun detect = run_cli("detect " + file);
        for (const CliRun* run : {&stream, &tree, &detect}) {
            EXPECT_EQ(run->exit_code, 3) << c.what << "\n" << run->err;
            EXPECT_EQ(run->out, "") << c.what;
        }
        EXPECT_NE(tree.err.find("h.xml:" + c.where), std::string::npos) << c.what << "\n" << tree.err;
        EXPECT_NE(tree.err.find("not well-formed XML: " + c.message), std::string::npos) << c.what << "\n" << tree.err;
        EXPECT_NE(tree.err.find("(TOLVEN:io:xml:common:MalformedDocument)"), std::string::npos) << c.what;
        EXPECT_EQ(stream.err, tree.err) << c.what;
        EXPECT_EQ(detect.err, tree.err) << c.what;
        std::filesystem::remove(file.substr(1, file.size() - 2));
    }
}

TEST(ParserLimits, HugeLiftsTheLimitsForATrustedDocument) {
    const std::string file =
        quote(write_temp_file("deep.xml", table_with("", repeat("<x>", 300) + repeat("</x>", 300))));
    for (const char* path : {" --stream --sample-bytes 4KiB", " --no-stream"}) {
        const CliRun run = run_cli("read " + file + path + " --huge");
        EXPECT_EQ(run.exit_code, 0) << path << run.err;
        EXPECT_NE(run.err.find("300 rows, "), std::string::npos) << run.err;
    }
    EXPECT_EQ(run_cli("detect " + file + " --huge").exit_code, 0);
}

TEST(BoundedInput, InputThatIsNotXmlIsRefusedAtItsFirstBytes) {
    // The producer is cut off (SIGPIPE, 141) long before it has written everything.
    for (const std::string command : {"read - --sample-bytes 1GiB", "read -", "detect -"}) {
        for (const char* producer : {"head -c 300000000 /dev/zero", "yes junk | head -c 300000000"}) {
            const CliRun run =
                run_shell(std::string(producer) + " | \"$T\" " + command + "; echo \"${PIPESTATUS[*]}\"");
            EXPECT_NE(run.out.find("141"), std::string::npos) << producer << " | " << command << ": " << run.out;
            EXPECT_NE(run.err.find("<stdin>:1:1: the document is not well-formed XML: the input is not XML: it is "
                                   "empty or does not start with '<'"),
                      std::string::npos)
                << run.err;
        }
    }
    const CliRun device = run_shell("timeout 20 \"$T\" read /dev/zero");
    EXPECT_EQ(device.exit_code, 3) << device.err;
    EXPECT_NE(device.err.find("/dev/zero:1:1:"), std::string::npos) << device.err;
}

TEST(BoundedInput, BuffersAreSizedToTheDataAndAPipedTreeIsBounded) {
#if !defined(__SANITIZE_ADDRESS__)
    // A sample limit far beyond the data allocates only what the data needs (here under 1 GB of address space).
    const CliRun small = run_shell("ulimit -v 1000000; \"$T\" read examples/catalog.xml --stream --sample-bytes 3GiB");
    EXPECT_EQ(small.exit_code, 0) << small.err;
    EXPECT_NE(small.err.find("4 rows, 7 columns"), std::string::npos) << small.err;
#endif
    // Standard input read whole as a tree stops at 32 MiB.
    const CliRun piped = run_shell("(echo '<t><r>'; head -c 40000000 /dev/zero | tr '\\0' x; echo '</r></t>') | \"$T\" "
                                   "read - --no-stream --huge");
    EXPECT_EQ(piped.exit_code, 3) << piped.err;
    EXPECT_NE(piped.err.find("Cannot read '<stdin>': it is larger than 32 MiB"), std::string::npos) << piped.err;
}

}  // namespace
