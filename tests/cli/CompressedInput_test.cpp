// Compressed input: detect, read and tables give on a compressed document, from a file or standard input,
// exactly what they give on the plain one; damaged compressed data is an unreadable input (exit 3).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "cli/support/run_cli.hpp"

namespace {

using tolven::testing::run_cli;
using tolven::testing::write_temp_file;

// Runs a shell command, failing the test when it fails.
void shell(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }

// 1500 rows, some 40 KB: past a 4 KiB sample, so that read streams it.
std::string document() {
    std::string xml = "<?xml version=\"1.0\"?>\n<t>\n";
    for (int i = 0; i < 1500; ++i) xml += "<r id=\"" + std::to_string(i) + "\"><a>" + std::to_string(i * 7) + "</a><b>x</b></r>\n";
    return xml + "</t>\n";
}

struct Format {
    const char* name;
    const char* compress;  // writes the compressed $1 to standard output
};
const Format kFormats[] = {
    {"gzip", "gzip -c \"$1\""},
    {"bzip2", "bzip2 -c \"$1\""},
    {"xz", "xz -c \"$1\""},
    {"zstd", "zstd -qc \"$1\""},
    // Members one after another, as `cat a.gz b.gz` gives, split mid-row.
    {"gzip", "head -c 20000 \"$1\" | gzip -c; tail -c +20001 \"$1\" | gzip -c"},
};

std::string compressed(const std::string& plain, const Format& format) {
    const std::string path = plain + ".compressed";
    shell("sh -c '" + std::string(format.compress) + "' sh '" + plain + "' > '" + path + "'");
    return path;
}

TEST(CompressedInput, EveryCommandGivesWhatItGivesOnThePlainDocument) {
    const std::string plain = write_temp_file("table.xml", document());
    const char* commands[] = {"detect", "tables", "read", "read --sample-bytes 4096", "read --format jsonl"};
    for (const Format& format : kFormats) {
        const std::string packed = compressed(plain, format);
        for (const char* command : commands) {
            const auto expected = run_cli(std::string(command) + " '" + plain + "'");
            ASSERT_EQ(expected.exit_code, 0) << command << expected.err;
            const auto from_file = run_cli(std::string(command) + " '" + packed + "'");
            const auto from_stdin = run_cli(std::string(command) + " -", packed);
            for (const auto* run : {&from_file, &from_stdin}) {
                EXPECT_EQ(run->exit_code, 0) << format.compress << ": " << command << run->err;
                EXPECT_EQ(run->out, expected.out) << format.compress << ": " << command;
            }
        }
    }
}

TEST(CompressedInput, TruncatedOrCorruptDataIsAnUnreadableInput) {
    const std::string plain = write_temp_file("table.xml", document());
    for (const Format& format : kFormats) {
        const std::string packed = compressed(plain, format);
        const auto size = std::filesystem::file_size(packed);
        const std::string truncated = packed + ".truncated", corrupt = packed + ".corrupt";
        shell("head -c " + std::to_string(size - 1) + " '" + packed + "' > '" + truncated + "'");
        shell("cp '" + packed + "' '" + corrupt + "' && printf XXXXXXXX | dd of='" + corrupt + "' bs=1 seek=" +
              std::to_string(size / 2) + " conv=notrunc 2>/dev/null");
        for (const char* command : {"detect", "tables", "read", "read --sample-bytes 4096"}) {
            const auto cut = run_cli(std::string(command) + " '" + truncated + "'");
            EXPECT_EQ(cut.exit_code, 3) << format.compress << ": " << command;
            EXPECT_NE(cut.err.find("its " + std::string(format.name) + " data breaks off before the end"),
                      std::string::npos)
                << cut.err;
            // Damage is found by the decoder, or by the parser when what it decodes to is not XML.
            const auto bad = run_cli(std::string(command) + " - ", corrupt);
            EXPECT_EQ(bad.exit_code, 3) << format.compress << ": " << command;
            EXPECT_TRUE(bad.err.find("data is corrupt") != std::string::npos ||
                        bad.err.find("MalformedDocument") != std::string::npos)
                << bad.err;
        }
    }
}

TEST(CompressedInput, WhatExpandsEnormouslyMeetsTheLimitsOfAnyDocument) {
    // A few KB of gzip each, expanding to tens of MB: the parser's limits and the tree's cap on input of
    // unknown size hold for what comes out.
    const struct {
        const char* command;
        const char* body;  // a shell command writing the document's body
        const char* error;
    } bombs[] = {
        {"tables", "head -c 12000000 /dev/zero | tr '\\0' ' '", "a text node is longer than 10,000,000 bytes"},
        {"detect --no-stream", "yes '<r>x</r>' | head -c 34000000", "larger than 32 MiB, the most read from a pipe or compressed"},
    };
    for (const auto& bomb : bombs) {
        const std::string path = write_temp_file("bomb.gz", "");
        shell("{ printf '<t>'; " + std::string(bomb.body) + "; printf '</t>'; } | gzip -1 > '" + path + "'");
        const auto run = run_cli(std::string(bomb.command) + " '" + path + "'");
        EXPECT_EQ(run.exit_code, 3) << bomb.command;
        EXPECT_NE(run.err.find(bomb.error), std::string::npos) << run.err;
    }
}

}  // namespace
