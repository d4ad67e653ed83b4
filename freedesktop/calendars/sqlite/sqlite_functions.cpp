#include "freedesktop/calendars/sqlite/sqlite_functions.h"

#include <utility>

#include "freedesktop/io/module_function.h"

namespace quorvel::freedesktop::calendars {

namespace {

// Remembers the first function that is missing.
class FunctionFinder {
public:
    explicit FunctionFinder(LoadedModule library)
        : m_library(library) {}

    template <class Function>
    void find(const char* name, Function& function) {
        const auto found = m_library.function(name);
        if (found) {
            function = reinterpret_cast<Function>(*found);
        } else if (m_failure.empty()) {
            m_failure = found.error();
        }
    }
    const std::string& failure() const { return m_failure; } // empty: none is missing

private:
    LoadedModule m_library;
    std::string m_failure;
};

std::string loadFailure(const std::string& reason) {
    return "SQLite cannot be loaded (" + reason +
           "): install it (on Debian the package libsqlite3-0)";
}

} // namespace

Result<SqliteFunctions, std::string> sqliteFunctionsOf(const std::string& library) {
    const auto module = LoadedModule::load(library);
    if (!module) {
        return loadFailure(module.error());
    }
    FunctionFinder finder(*module);
    SqliteFunctions functions{};
    finder.find("sqlite3_open_v2", functions.open_v2);
    finder.find("sqlite3_close", functions.close);
    finder.find("sqlite3_errstr", functions.errstr);
    finder.find("sqlite3_exec", functions.exec);
    finder.find("sqlite3_busy_timeout", functions.busy_timeout);
    finder.find("sqlite3_db_config", functions.db_config);
    finder.find("sqlite3_db_release_memory", functions.db_release_memory);
    finder.find("sqlite3_limit", functions.limit);
    finder.find("sqlite3_progress_handler", functions.progress_handler);
    finder.find("sqlite3_prepare_v2", functions.prepare_v2);
    finder.find("sqlite3_finalize", functions.finalize);
    finder.find("sqlite3_bind_int64", functions.bind_int64);
    finder.find("sqlite3_bind_blob64", functions.bind_blob64);
    finder.find("sqlite3_bind_text64", functions.bind_text64);
    finder.find("sqlite3_step", functions.step);
    finder.find("sqlite3_reset", functions.reset);
    finder.find("sqlite3_column_type", functions.column_type);
    finder.find("sqlite3_column_int64", functions.column_int64);
    finder.find("sqlite3_column_double", functions.column_double);
    finder.find("sqlite3_column_text", functions.column_text);
    finder.find("sqlite3_column_blob", functions.column_blob);
    finder.find("sqlite3_column_bytes", functions.column_bytes);
    if (!finder.failure().empty()) {
        return loadFailure(finder.failure());
    }
    return functions;
}

const Result<SqliteFunctions, std::string>& sqliteFunctions() {
    // The name that all versions of its interface have had.
    static const auto functions = sqliteFunctionsOf("libsqlite3.so.0");
    return functions;
}

} // namespace quorvel::freedesktop::calendars
