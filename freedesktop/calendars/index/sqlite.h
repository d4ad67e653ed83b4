// SQLite's handles as objects. For this folder's own sources.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace quorvel::freedesktop::calendars {

class SqliteError {
public:
    explicit SqliteError(int code)
        : m_code(code) {}
    int code() const { return m_code & 0xFF; }
    std::string reason() const { return sqlite3_errstr(m_code); }

private:
    int m_code;
};

class SqliteStatement {
public:
    SqliteStatement(sqlite3* database, const char* text) { // throws SqliteError, as all of them
        sqlite3_stmt* statement = nullptr;
        const int code = sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
        m_statement.reset(statement);
        check(code);
    }

    SqliteStatement& bind(int place, std::int64_t value) {
        check(sqlite3_bind_int64(m_statement.get(), place, value));
        return *this;
    }
    // The bytes outlive the run.
    SqliteStatement& bind(int place, std::string_view bytes) {
        check(sqlite3_bind_blob64(m_statement.get(), place, bytes.data(), bytes.size(),
                                  SQLITE_STATIC));
        return *this;
    }

    bool next() { // to the next row; false: there is none
        const int code = sqlite3_step(m_statement.get());
        if (code != SQLITE_ROW && code != SQLITE_DONE) {
            throw SqliteError(code);
        }
        return code == SQLITE_ROW;
    }
    void run() {
        while (next()) {
        }
        reset();
    }
    void reset() { sqlite3_reset(m_statement.get()); }

    std::int64_t number(int column) { return sqlite3_column_int64(m_statement.get(), column); }
    // Until the next step.
    std::string_view bytes(int column) {
        const void* const start = sqlite3_column_blob(m_statement.get(), column);
        const int size = sqlite3_column_bytes(m_statement.get(), column);
        return {static_cast<const char*>(start),
                start == nullptr ? 0 : static_cast<std::size_t>(size)};
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    static void check(int code) {
        if (code != SQLITE_OK) {
            throw SqliteError(code);
        }
    }
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

class SqliteDatabase {
public:
    // Throws SqliteError.
    SqliteDatabase(const std::string& path, int flags) {
        sqlite3* database = nullptr;
        const int code = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
        m_database.reset(database);
        if (code != SQLITE_OK) {
            throw SqliteError(code);
        }
    }
    sqlite3* get() const { return m_database.get(); }
    void run(const char* text) const {
        const int code = sqlite3_exec(get(), text, nullptr, nullptr, nullptr);
        if (code != SQLITE_OK) {
            throw SqliteError(code);
        }
    }
    std::int64_t number(const char* query) const {
        SqliteStatement statement(get(), query);
        return statement.next() ? statement.number(0) : 0;
    }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

// Undone unless it is committed.
class SqliteTransaction {
public:
    SqliteTransaction(const SqliteDatabase& database, const char* begin)
        : m_database(database) {
        m_database.run(begin);
    }
    ~SqliteTransaction() {
        if (!m_isCommitted) {
            sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        }
    }
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    void commit() {
        m_database.run("COMMIT");
        m_isCommitted = true;
    }

private:
    const SqliteDatabase& m_database;
    bool m_isCommitted = false;
};

} // namespace quorvel::freedesktop::calendars
