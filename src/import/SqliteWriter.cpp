#include "import/SqliteWriter.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <system_error>

#include "import/PendingOutputs.hpp"
#include "import/errors.hpp"

namespace tolven::import {

namespace {

// name as an SQL identifier: double-quoted, inner quotes doubled.
std::string sql_identifier(const std::string& name) {
    std::string out = "\"";
    for (const char c : name) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + '"';
}

bool is_integer_type(const std::string& type) {
    return type == "uint8" || type == "uint16" || type == "uint32" || type == "uint64" || type == "int8" ||
           type == "int16" || type == "int32" || type == "int64";
}

// True when text is a whole number that fits a signed 64-bit integer.
bool whole_int64(std::string_view text, std::int64_t& value) {
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    return r.ec == std::errc() && r.ptr == text.data() + text.size();
}

}  // namespace

SqliteWriter::SqliteWriter(std::string path, std::string table, bool replace)
    : path_(std::move(path)), table_(std::move(table)), replace_(replace) {
    if (path_.empty() || path_ == "-")
        vxErrMsgId(TOLVEN::import::OutputNotWritable(path_, std::string("an SQLite database must be a file")));
    std::error_code error;
    created_ = !std::filesystem::exists(path_, error);
    // Registered before SQLite creates the file, so no moment is left when a signal would leave it.
    if (created_) register_pending();
    if (sqlite3_open_v2(path_.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        const std::string reason = db_ ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        db_ = nullptr;
        if (created_) std::filesystem::remove(path_, error);
        unregister_pending();
        vxErrMsgId(TOLVEN::import::OutputNotWritable(path_, reason));
    }
    try {
        // IMMEDIATE takes the write lock now, so no other writer slips in between the check and the commit.
        execute("BEGIN IMMEDIATE");
        if (!replace_ && table_exists()) vxErrMsgId(TOLVEN::import::TableExists(table_, path_));
    } catch (...) {
        abandon();
        throw;
    }
}

SqliteWriter::~SqliteWriter() { abandon(); }

void SqliteWriter::register_pending() {
    const std::filesystem::path file(path_);
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
    folder_fd_ = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder_fd_ < 0) return;  // SQLite's own open will say what is wrong with the folder
    const std::string name = file.filename().string();
    pending_slots_[0] = register_pending_output(folder_fd_, name.c_str());
    pending_slots_[1] = register_pending_output(folder_fd_, (name + "-journal").c_str());
}

void SqliteWriter::unregister_pending() noexcept {
    for (int& slot : pending_slots_) {
        unregister_pending_output(slot);
        slot = -1;
    }
    if (folder_fd_ >= 0) ::close(folder_fd_);
    folder_fd_ = -1;
}

void SqliteWriter::abandon() noexcept {
    if (db_ != nullptr) {
        sqlite3_finalize(insert_);
        insert_ = nullptr;
        if (!committed_) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close(db_);
        db_ = nullptr;
        if (!committed_ && created_) {
            std::error_code error;
            std::filesystem::remove(path_, error);
            std::filesystem::remove(path_ + "-journal", error);
        }
    }
    unregister_pending();
}

void SqliteWriter::fail() const { vxErrMsgId(TOLVEN::import::OutputNotWritable(path_, std::string(sqlite3_errmsg(db_)))); }

void SqliteWriter::execute(const std::string& sql) const {
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

bool SqliteWriter::table_exists() const {
    sqlite3_stmt* query = nullptr;
    if (sqlite3_prepare_v2(db_, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE", -1,
                           &query, nullptr) != SQLITE_OK)
        fail();
    sqlite3_bind_text(query, 1, table_.data(), static_cast<int>(table_.size()), SQLITE_TRANSIENT);
    const int step = sqlite3_step(query);
    sqlite3_finalize(query);
    if (step != SQLITE_ROW && step != SQLITE_DONE) fail();
    return step == SQLITE_ROW;
}

void SqliteWriter::begin(const std::vector<Column>& columns) {
    if (replace_) execute("DROP TABLE IF EXISTS " + sql_identifier(table_));
    std::string create = "CREATE TABLE " + sql_identifier(table_) + " (";
    std::string insert = "INSERT INTO " + sql_identifier(table_) + " VALUES (";
    for (std::size_t i = 0; i < columns.size(); ++i) {
        static constexpr const char* kDeclared[] = {"INTEGER", "REAL", "TEXT"};
        const std::string& type = columns[i].type;
        affinities_.push_back(is_integer_type(type)                  ? Affinity::Integer
                              : type == "double" || type == "single" ? Affinity::Real
                                                                     : Affinity::Text);
        create += (i ? ", " : "") + sql_identifier(columns[i].name) + ' ' + kDeclared[static_cast<int>(affinities_[i])];
        insert += i ? ", ?" : "?";
    }
    execute(create + ")");
    if (sqlite3_prepare_v2(db_, (insert + ")").c_str(), -1, &insert_, nullptr) != SQLITE_OK) fail();
}

void SqliteWriter::write_row(std::span<const Cell> cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int slot = static_cast<int>(i) + 1;
        const std::string_view text = cells[i].text;
        const char* first = text.data();
        const char* last = first + text.size();
        int bound = SQLITE_OK;
        std::int64_t integer = 0;
        if (cells[i].kind == Cell::Kind::Missing) {
            bound = sqlite3_bind_null(insert_, slot);
        } else if (cells[i].kind == Cell::Kind::Number && affinities_[i] == Affinity::Integer &&
                   whole_int64(text, integer)) {
            bound = sqlite3_bind_int64(insert_, slot, integer);
        } else if (affinities_[i] != Affinity::Text && (cells[i].kind == Cell::Kind::Number || text == "Inf" || text == "-Inf")) {
            // Integers beyond SQLite's signed 64 bits become REAL here, as SQLite would make them anyway.
            double value = std::numeric_limits<double>::infinity();
            if (text == "-Inf") value = -value;
            else if (text != "Inf") std::from_chars(first, last, value);
            bound = sqlite3_bind_double(insert_, slot, value);
        } else {
            bound = sqlite3_bind_text(insert_, slot, first, static_cast<int>(text.size()), SQLITE_STATIC);
        }
        if (bound != SQLITE_OK) fail();
    }
    if (sqlite3_step(insert_) != SQLITE_DONE) fail();
    sqlite3_reset(insert_);
}

void SqliteWriter::end() {
    sqlite3_finalize(insert_);
    insert_ = nullptr;
    execute("COMMIT");
    committed_ = true;
    unregister_pending();
}

std::string default_table_name(const std::string& input_path) {
    const std::string stem = input_path == "-" ? std::string() : std::filesystem::path(input_path).stem().string();
    return stem.empty() ? "data" : stem;
}

}  // namespace tolven::import
