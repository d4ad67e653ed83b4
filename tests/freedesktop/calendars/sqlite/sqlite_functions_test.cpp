// Looks up SQLite's functions in the installed library, in a missing one, and in one without them.
#include "freedesktop/calendars/sqlite/sqlite_functions.h"

#include <string>

#include <gtest/gtest.h>

#include "freedesktop/calendars/sqlite/sqlite.h"

namespace quorvel::freedesktop::calendars {
namespace {

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

TEST(SqliteFunctions, AreThoseOfTheInstalledLibrary) {
    ASSERT_TRUE(sqliteFunctions()) << sqliteFunctions().error();
    EXPECT_STREQ(sqlite().errstr(SQLITE_CORRUPT), "database disk image is malformed");
}

TEST(SqliteFunctions, NameThePackageThatIsMissing) {
    const auto functions = sqliteFunctionsOf("libquorvel-none.so.0");
    ASSERT_FALSE(functions);
    EXPECT_TRUE(contains(functions.error(), "SQLite cannot be loaded (libquorvel-none.so.0: "))
        << functions.error();
    EXPECT_TRUE(contains(functions.error(), "(on Debian the package libsqlite3-0)"))
        << functions.error();
}

TEST(SqliteFunctions, NameTheFunctionThatALibraryLacks) {
    const auto functions = sqliteFunctionsOf("libm.so.6");
    ASSERT_FALSE(functions);
    EXPECT_TRUE(contains(functions.error(), "sqlite3_open_v2")) << functions.error();
}

TEST(SqliteDatabase, WhatCannotBeOpenedDoesNothing) {
    SqliteDatabase database("/dev/null/none", SQLITE_OPEN_READONLY);
    database.waitForLocks(1);
    database.set(SQLITE_DBCONFIG_DEFENSIVE, true);
    database.limit(SQLITE_LIMIT_LENGTH, 1000);
    database.releaseMemory();
    SqliteStatement statement(database, "SELECT 1");
    EXPECT_FALSE(statement.bind(1, 1).next());
    statement.reset();
    ASSERT_TRUE(database.error());
    EXPECT_EQ(database.error()->code, SQLITE_CANTOPEN);
    EXPECT_EQ(database.number("SELECT 1"), 0);
}

} // namespace
} // namespace quorvel::freedesktop::calendars
