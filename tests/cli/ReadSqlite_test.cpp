#include <gtest/gtest.h>

#include "cli/support/run_cli.hpp"

namespace {

using tolven::testing::example;
using tolven::testing::fresh_folder;
using tolven::testing::run_cli;

TEST(ReadSqlite, WritesTheTableNamedAfterTheInputAndRefusesToOverwriteIt) {
    const std::string db = (fresh_folder() / "books.db").string();
    const std::string read = "read " + example("catalog.xml") + " --format sqlite -o " + db;
    const auto first = run_cli(read);
    EXPECT_EQ(first.exit_code, 0) << first.err;
    EXPECT_NE(first.err.find("4 rows"), std::string::npos) << first.err;
    const auto again = run_cli(read);
    EXPECT_EQ(again.exit_code, 1);
    EXPECT_NE(again.err.find("(TOLVEN:import:TableExists)"), std::string::npos) << again.err;
    EXPECT_EQ(run_cli(read + " --replace").exit_code, 0);
    EXPECT_EQ(run_cli(read + " --table-name books").exit_code, 0);

    for (const char* usage : {" --format sqlite", " --format sqlite -o -", " --table-name t", " --replace"}) {
        const auto run = run_cli("read " + example("catalog.xml") + usage);
        EXPECT_EQ(run.exit_code, 2) << usage;
        EXPECT_NE(run.err.find("sqlite"), std::string::npos) << run.err;
    }
}

}  // namespace
