// SQLite's handles as objects, for the folders of calendars that use it in their sources.
//
// A connection remembers its first error, after which its calls do nothing: a sequence of calls is
// checked once, at its end.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/calendars/sqlite/sqlite_functions.h"

namespace quorvel::freedesktop::calendars {

struct SqliteError {
    int code = SQLITE_OK; // a primary result code
    std::string reason;
};

class SqliteDatabase {
public:
    SqliteDatabase(const std::string& path, int flags) {
        if (!sqliteFunctions()) {
            m_error = {SQLITE_CANTOPEN, sqliteFunctions().error()};
            return;
        }
        sqlite3* database = nullptr;
        const int code = sqlite().open_v2(path.c_str(), &database, flags, nullptr);
        m_database.reset(database);
        check(code);
    }

    const std::optional<SqliteError>& error() const { return m_error; } // absent: there was none
    bool hasFailed() const { return m_error.has_value(); }
    // Remembers the result of a call unless it is a success, or there was an error before.
    void check(int code) {
        const int primary = code & 0xFF;
        if (primary != SQLITE_OK && primary != SQLITE_ROW && primary != SQLITE_DONE && !m_error) {
            m_error = {primary, sqlite().errstr(code)};
        }
    }

    bool isOpen() const { return m_database != nullptr && !hasFailed(); }
    sqlite3* get() const { return m_database.get(); } // null: it could not be opened

    // These do nothing where it could not be opened.
    void waitForLocks(int milliseconds) {
        if (m_database) {
            sqlite().busy_timeout(get(), milliseconds);
        }
    }
    void set(int option, bool isOn) { // SQLITE_DBCONFIG_...
        if (m_database) {
            sqlite().db_config(get(), option, isOn ? 1 : 0, nullptr);
        }
    }
    void limit(int category, int value) { // SQLITE_LIMIT_...
        if (m_database) {
            sqlite().limit(get(), category, value);
        }
    }
    // Calls in between, and interrupts what runs where the result is not 0.
    void callBetweenSteps(int steps, int (*function)(void*), void* context) {
        if (m_database) {
            sqlite().progress_handler(get(), steps, function, context);
        }
    }
    void releaseMemory() {
        if (m_database) {
            sqlite().db_release_memory(get());
        }
    }

    void run(const char* text) {
        if (!hasFailed()) {
            check(sqlite().exec(get(), text, nullptr, nullptr, nullptr));
        }
    }
    std::int64_t number(const char* query); // 0 where there is no row

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite().close(database); }
    };
    std::unique_ptr<sqlite3, Close> m_database;
    std::optional<SqliteError> m_error;
};

// Outlived by its database.
class SqliteStatement {
public:
    SqliteStatement(SqliteDatabase& database, const char* text)
        : m_database(database) {
        if (!database.hasFailed()) {
            sqlite3_stmt* statement = nullptr;
            database.check(sqlite().prepare_v2(database.get(), text, -1, &statement, nullptr));
            m_statement.reset(statement);
        }
    }

    SqliteStatement& bind(int parameter, std::int64_t value) {
        if (m_statement) {
            m_database.check(sqlite().bind_int64(m_statement.get(), parameter, value));
        }
        return *this;
    }
    // The bytes outlive the run.
    SqliteStatement& bind(int parameter, std::string_view bytes) {
        if (m_statement) {
            m_database.check(sqlite().bind_blob64(m_statement.get(), parameter, bytes.data(),
                                                  bytes.size(), SQLITE_STATIC));
        }
        return *this;
    }
    // A text; in SQLite no text equals a blob. The characters outlive the run.
    SqliteStatement& bindText(int parameter, std::string_view text) {
        if (m_statement) {
            m_database.check(sqlite().bind_text64(m_statement.get(), parameter, text.data(),
                                                  text.size(), SQLITE_STATIC, SQLITE_UTF8));
        }
        return *this;
    }

    bool next() { // to the next row; false: there is none, or an error
        if (!m_statement || m_database.hasFailed()) {
            return false;
        }
        const int code = sqlite().step(m_statement.get());
        m_database.check(code);
        return code == SQLITE_ROW;
    }
    void run() {
        while (next()) {
        }
        reset();
    }
    void reset() {
        if (m_statement) {
            sqlite().reset(m_statement.get());
        }
    }

    // Of the current row.
    std::int64_t number(int column) { return sqlite().column_int64(m_statement.get(), column); }
    double realNumber(int column) { return sqlite().column_double(m_statement.get(), column); }
    int typeOf(int column) { return sqlite().column_type(m_statement.get(), column); }
    // A text or a number as UTF-8, a blob as it is; until the next step.
    std::string_view text(int column) {
        const unsigned char* const start = sqlite().column_text(m_statement.get(), column);
        const int size = sqlite().column_bytes(m_statement.get(), column);
        return {reinterpret_cast<const char*>(start),
                start == nullptr ? 0 : static_cast<std::size_t>(size)};
    }
    // Until the next step.
    std::string_view bytes(int column) {
        const void* const start = sqlite().column_blob(m_statement.get(), column);
        const int size = sqlite().column_bytes(m_statement.get(), column);
        return {static_cast<const char*>(start),
                start == nullptr ? 0 : static_cast<std::size_t>(size)};
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite().finalize(statement); }
    };
    SqliteDatabase& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement; // null after an error
};

inline std::int64_t SqliteDatabase::number(const char* query) {
    SqliteStatement statement(*this, query);
    return statement.next() ? statement.number(0) : 0;
}

// Rolled back unless it is committed. Outlived by its database.
class SqliteTransaction {
public:
    SqliteTransaction(SqliteDatabase& database, const char* begin)
        : m_database(database) {
        m_database.run(begin);
    }
    ~SqliteTransaction() {
        if (!m_isCommitted && m_database.get() != nullptr) {
            sqlite().exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        }
    }
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    void commit() {
        m_database.run("COMMIT");
        m_isCommitted = !m_database.hasFailed();
    }

private:
    SqliteDatabase& m_database;
    bool m_isCommitted = false;
};

} // namespace quorvel::freedesktop::calendars
