#pragma once
#include <sqlite3.h>

#include <string>
#include <vector>

#include "import/RowSink.hpp"
#include "import/TableWriter.hpp"

namespace tolven::import {

// Writes the table into an SQLite database, new or existing, in one transaction: a table with a
// column per variable, declared by the type the column is written as: INTEGER (integer types),
// REAL (the other number types) or TEXT (strings, numbers kept as text for their leading zeros, and
// dates and durations as their ISO text). SQLite's integers are signed 64-bit, so an uint64 above
// 2^63-1 is stored as REAL; "NaN" stays text, infinities are REAL. Nothing is visible until end()
// commits; a writer destroyed before that rolls back, and removes the database file when it
// created it, so a failure leaves the database as it was. A database it creates is registered
// with PendingOutputs until committed, so a signal handler can remove it too.
class SqliteWriter : public TableWriter {
public:
    // Opens the database and locks it for writing. Raises "TOLVEN:import:OutputNotWritable" (path,
    // reason) when it cannot be opened or is not a database, and "TOLVEN:import:TableExists" (table,
    // path) when it holds a table of that name (compared as SQLite does, ignoring case) and replace
    // is false.
    SqliteWriter(std::string path, std::string table, bool replace);
    ~SqliteWriter() override;
    SqliteWriter(const SqliteWriter&) = delete;
    SqliteWriter& operator=(const SqliteWriter&) = delete;

    // Drops the old table when replacing, and creates the new one.
    void begin(const std::vector<Column>& columns) override;
    void write_row(std::span<const Cell> cells) override;
    // Commits the transaction. Raises OutputNotWritable.
    void end() override;

private:
    enum class Affinity { Integer, Real, Text };
    // Rolls back what is not committed, closes the database, and removes it when it was created.
    void abandon() noexcept;
    [[noreturn]] void fail() const;
    void execute(const std::string& sql) const;
    bool table_exists() const;
    // Registers the database file and its journal for removal by a signal handler.
    void register_pending();
    void unregister_pending() noexcept;

    std::string path_;
    std::string table_;
    bool replace_;
    bool created_ = false;  // the database file did not exist before
    bool committed_ = false;
    std::vector<Affinity> affinities_;
    sqlite3* db_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    int folder_fd_ = -1;
    int pending_slots_[2] = {-1, -1};
};

// The table a document is written to when no name is given: the input file's name without its
// folder and extension ("catalog" for data/catalog.xml), "data" for standard input ("-").
std::string default_table_name(const std::string& input_path);

}  // namespace tolven::import
