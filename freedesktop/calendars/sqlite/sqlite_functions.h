// SQLite's functions, of a library that is loaded when a database is opened for the first time: a
// start without an index or Thunderbird's calendars needs none.
#pragma once

#include <string>

#include <sqlite3.h>

#include "base/result.h"

namespace quorvel::freedesktop::calendars {

// None is null. Named as in the library, without its prefix.
struct SqliteFunctions {
    decltype(&sqlite3_open_v2) open_v2;
    decltype(&sqlite3_close) close;
    decltype(&sqlite3_errstr) errstr;
    decltype(&sqlite3_exec) exec;
    decltype(&sqlite3_busy_timeout) busy_timeout;
    decltype(&sqlite3_db_config) db_config;
    decltype(&sqlite3_db_release_memory) db_release_memory;
    decltype(&sqlite3_limit) limit;
    decltype(&sqlite3_progress_handler) progress_handler;

    decltype(&sqlite3_prepare_v2) prepare_v2;
    decltype(&sqlite3_finalize) finalize;
    decltype(&sqlite3_bind_int64) bind_int64;
    decltype(&sqlite3_bind_blob64) bind_blob64;
    decltype(&sqlite3_bind_text64) bind_text64;
    decltype(&sqlite3_step) step;
    decltype(&sqlite3_reset) reset;

    decltype(&sqlite3_column_type) column_type;
    decltype(&sqlite3_column_int64) column_int64;
    decltype(&sqlite3_column_double) column_double;
    decltype(&sqlite3_column_text) column_text;
    decltype(&sqlite3_column_blob) column_blob;
    decltype(&sqlite3_column_bytes) column_bytes;
};

// Loads the library at the first call. The error says why there is none. On any thread.
const Result<SqliteFunctions, std::string>& sqliteFunctions();

// The same where it is known to be loaded, because a database has been opened.
inline const SqliteFunctions& sqlite() {
    return *sqliteFunctions();
}

// From the library of that name in the system's folders.
Result<SqliteFunctions, std::string> sqliteFunctionsOf(const std::string& library);

} // namespace quorvel::freedesktop::calendars
