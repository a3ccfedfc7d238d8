// SQLite output: typed columns, one transaction, and a database left as it was on any failure.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <tolven/xml.hpp>

#include <filesystem>

#include "api/support/collect.hpp"
#include "support/files.hpp"

namespace {

namespace tx = tolven::xml;
namespace fs = std::filesystem;
using tolven::testing::fresh_folder;
using tolven::testing::slurp;

// The rows of a query, each as its values joined by "|" (NULL as "null").
std::vector<std::string> query(const std::string& db_path, const std::string& sql) {
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(db_path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    std::vector<std::string> rows;
    while (statement && sqlite3_step(statement) == SQLITE_ROW) {
        std::string row;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const auto* text = sqlite3_column_text(statement, i);
            row += (i ? "|" : "") + (text ? std::string(reinterpret_cast<const char*>(text)) : std::string("null"));
        }
        rows.push_back(row);
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return rows;
}

tx::Output sqlite(const std::string& path, bool replace = false) {
    return {.format = tx::Output::Format::Sqlite, .path = path, .table_name = "t", .replace = replace};
}

const std::string kTyped =
    "<t><r><x>1.5</x><u>0x1F</u><w>2024-01-05 10:20:30</w><d>01:30</d><s>a</s></r>"
    "<r><x>NaN</x><u>0xFFFFFFFFFFFFFFFF</u><w>2024-01-06</w><d>-02:00:30.5</d><s></s></r>"
    "<r><x>-inf</x><u>0x0</u><w>bad</w><d>00:01</d><s>c</s></r>"
    "<r><x>2e3</x><u>0x1</u><w>2024-01-07</w><d>00:02</d><s>d</s></r>"
    "<r><x>7</x><u>0x2</u><w>2024-01-08</w><d>00:03</d><s>e</s></r></t>";

TEST(SqliteOutput, WritesTypedColumns) {
    const std::string db = (fresh_folder() / "out.db").string();
    const auto summary = tx::read(tx::Source::memory(kTyped), sqlite(db));
    EXPECT_EQ(summary.rows, 5u);
    EXPECT_EQ(query(db, "SELECT name, type FROM pragma_table_info('t')"),
              (std::vector<std::string>{"x|REAL", "u|INTEGER", "w|TEXT", "d|TEXT", "s|TEXT"}));
    EXPECT_EQ(query(db, "SELECT typeof(x), x, typeof(u), u, w, d, s FROM t LIMIT 3"),
              (std::vector<std::string>{"real|1.5|integer|31|2024-01-05T10:20:30|01:30:00|a",
                                        "text|NaN|real|1.84467440737096e+19|2024-01-06|-02:00:30.5|null",
                                        "real|-Inf|integer|0|bad|00:01:00|c"}));
}

TEST(SqliteOutput, NumbersWithLeadingZerosAreTextColumnsInEveryMode) {
    const std::string xml = "<t><r><zip>02110</zip><n>1</n></r><r><zip>90210</zip><n>2</n></r></t>";
    for (const auto mode : {tx::ReadSettings::Mode::Tree, tx::ReadSettings::Mode::Stream}) {
        const std::string db = (fresh_folder() / "out.db").string();
        const auto summary = tx::read(tx::Source::memory(xml), sqlite(db), {}, tolven::testing::in_mode(mode));
        EXPECT_EQ(summary.columns[0].type, "string");
        EXPECT_EQ(query(db, "SELECT name, type FROM pragma_table_info('t')"),
                  (std::vector<std::string>{"zip|TEXT", "n|REAL"}));
        EXPECT_EQ(query(db, "SELECT typeof(zip), zip FROM t"), (std::vector<std::string>{"text|02110", "text|90210"}));
        // A sink of the caller's is told the same type.
        EXPECT_EQ(tolven::testing::read_outcome(tx::Source::memory(xml)).table.header,
                  (std::vector<std::string>{"zip:string", "n:double"}));
    }
}

TEST(SqliteOutput, AnExistingTableIsAnErrorUnlessReplaced) {
    const std::string db = (fresh_folder() / "out.db").string();
    tx::read(tx::Source::memory(kTyped), sqlite(db));
    tx::read(tx::Source::memory(kTyped), {.format = tx::Output::Format::Sqlite, .path = db, .table_name = "other", .replace = false});
    const std::string before = slurp(db);
    try {
        tx::read(tx::Source::memory("<t><r><a>1</a></r><r><a>2</a></r></t>"), sqlite(db));
        FAIL() << "no error";
    } catch (const tx::Error& e) {
        EXPECT_EQ(e.identifier(), "TOLVEN:import:TableExists");
        EXPECT_EQ(e.arguments(), (std::vector<std::string>{"t", db}));
    }
    EXPECT_EQ(slurp(db), before);
    tx::read(tx::Source::memory("<t><r><a>1</a></r><r><a>2</a></r></t>"), sqlite(db, true));
    EXPECT_EQ(query(db, "SELECT a FROM t"), (std::vector<std::string>{"1.0", "2.0"}));
    EXPECT_EQ(query(db, "SELECT count(*) FROM other"), (std::vector<std::string>{"5"}));
}

TEST(SqliteOutput, AFailureLeavesTheDatabaseAsItWas) {
    std::string broken = "<t>";
    for (int i = 0; i < 200; ++i) broken += "<r><a>" + std::to_string(i) + "</a><b>x</b></r>";
    broken += "<r><a>1</b></r></t>";  // breaks off after many rows were written
    const tx::ReadSettings streamed = tolven::testing::in_mode(tx::ReadSettings::Mode::Stream, 512);
    const fs::path folder = fresh_folder();
    const std::string fresh = (folder / "new.db").string(), existing = (folder / "old.db").string();
    tx::read(tx::Source::memory(kTyped), sqlite(existing));
    const std::string before = slurp(existing);
    for (const auto& [path, replace] : {std::pair{fresh, false}, std::pair{existing, true}}) {
        try {
            tx::read(tx::Source::memory(broken), sqlite(path, replace), {}, streamed);
            FAIL() << "no error";
        } catch (const tx::Error& e) {
            EXPECT_EQ(e.identifier(), "TOLVEN:io:xml:common:MalformedDocument");
        }
    }
    EXPECT_FALSE(fs::exists(fresh));
    EXPECT_EQ(slurp(existing), before);
    EXPECT_EQ(query(existing, "SELECT count(*) FROM t"), (std::vector<std::string>{"5"}));
}

}  // namespace
