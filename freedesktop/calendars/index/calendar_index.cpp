// One file of SQLite's. Every content bears a hash of itself and its key, so that nothing that was
// torn is ever taken for whole; SQLite's own journal brings it back after a process was killed.
#include "freedesktop/calendars/index/calendar_index.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendars/index/sqlite.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr int format = 1;             // of the tables, and of what is in them
constexpr int longestReadingWait = 5; // milliseconds
constexpr int longestWritingWait = 50;
constexpr std::int64_t largestIndex = std::int64_t{256} << 20U;
constexpr std::size_t largestWrite = std::size_t{1} << 20U; // at once, unless a content is larger

constexpr const char* tables = "CREATE TABLE file(id INTEGER PRIMARY KEY, content BLOB);"
                               "CREATE TABLE snapshot(id INTEGER PRIMARY KEY, content BLOB,"
                               " made INTEGER DEFAULT(julianday('now') * 86400000));"
                               "CREATE TABLE search(id INTEGER PRIMARY KEY, content BLOB,"
                               " made INTEGER DEFAULT(julianday('now') * 86400000));";
constexpr const char* withoutTables =
    "DROP TABLE IF EXISTS file; DROP TABLE IF EXISTS snapshot; DROP TABLE IF EXISTS search;";
constexpr const char* latestOnly =
    "DELETE FROM snapshot WHERE id NOT IN (SELECT id FROM snapshot ORDER BY made DESC LIMIT 8);"
    "DELETE FROM search WHERE id NOT IN (SELECT id FROM search ORDER BY made DESC LIMIT 24);";

struct KindQueries {
    const char* find;
    const char* put;
};

constexpr std::array<KindQueries, 3> queries{{
    {"SELECT content FROM file WHERE id = ?",
     "INSERT OR REPLACE INTO file(id, content) VALUES(?, ?)"},
    {"SELECT content FROM snapshot WHERE id = ?",
     "INSERT OR REPLACE INTO snapshot(id, content) VALUES(?, ?)"},
    {"SELECT content FROM search WHERE id = ?",
     "INSERT OR REPLACE INTO search(id, content) VALUES(?, ?)"},
}};

std::int64_t rowOf(const Signature& key) {
    return static_cast<std::int64_t>(key.first);
}

std::uint64_t sealOf(IndexKind kind, const Signature& key, std::string_view content) {
    ContentHash hash;
    hash.add(static_cast<int>(kind));
    hash.add(key.first);
    hash.add(key.second);
    hash.add(content);
    return hash.value();
}

std::string sealed(IndexKind kind, const Signature& key, std::string content) {
    const std::uint64_t seal = sealOf(kind, key, content);
    content.insert(0, sizeof seal, '\0');
    std::memcpy(content.data(), &seal, sizeof seal);
    return content;
}

// Absent where it is not what was sealed.
std::optional<std::string_view> unsealed(IndexKind kind, const Signature& key,
                                         std::string_view bytes) {
    std::uint64_t seal = 0;
    if (bytes.size() < sizeof seal) {
        return std::nullopt;
    }
    std::memcpy(&seal, bytes.data(), sizeof seal);
    const std::string_view content = bytes.substr(sizeof seal);
    return seal == sealOf(kind, key, content) ? std::optional(content) : std::nullopt;
}

int versionOf(const SqliteDatabase& database) {
    return static_cast<int>(database.number("PRAGMA user_version"));
}

bool isTooLarge(const SqliteDatabase& database) {
    return database.number("PRAGMA page_count") * database.number("PRAGMA page_size") >
           largestIndex;
}

// Empty again, whatever it holds.
void reset(const SqliteDatabase& database) {
    sqlite3_db_config(database.get(), SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
    const int code = sqlite3_exec(database.get(), "VACUUM", nullptr, nullptr, nullptr);
    sqlite3_db_config(database.get(), SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
    if (code != SQLITE_OK) {
        throw SqliteError(code);
    }
}

// Why nothing is to be opened there; absent where there is a file, and where there is nothing. The
// folders before it may be links, as a home may be.
std::optional<std::string> obstacleAt(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? std::nullopt
                               : std::optional(std::generic_category().message(errno));
    }
    return S_ISREG(status.st_mode) ? std::nullopt : std::optional<std::string>("it is no file");
}

bool isThere(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

} // namespace

struct CalendarIndex::Reading::State {
    explicit State(const std::string& path)
        : database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX) {
        sqlite3_busy_timeout(database.get(), longestReadingWait);
        transaction.emplace(database, "BEGIN");
    }
    SqliteDatabase database;
    std::optional<SqliteTransaction> transaction;
    std::array<std::optional<SqliteStatement>, queries.size()> statements;
};

CalendarIndex::Reading::Reading(CalendarIndex& index)
    : m_index(index) {
    if (const auto obstacle = obstacleAt(m_index.path())) {
        m_index.fail(SQLITE_CANTOPEN, *obstacle);
        return;
    }
    if (m_index.m_isTorn || !isThere(m_index.path())) {
        return;
    }
    try {
        auto state = std::make_unique<State>(m_index.path());
        const int version = versionOf(state->database);
        if (version == m_index.m_version) {
            m_state = std::move(state);
        } else if (version != 0) {
            m_index.say("is of another version of the program, and is made anew");
        }
    } catch (const SqliteError& error) {
        m_index.fail(error.code(), error.reason());
    }
}

CalendarIndex::Reading::~Reading() = default;

std::optional<std::string> CalendarIndex::Reading::find(IndexKind kind, const Signature& key) {
    if (!m_state) {
        return std::nullopt;
    }
    try {
        const auto number = static_cast<std::size_t>(kind);
        auto& statement = m_state->statements[number];
        if (!statement) {
            statement.emplace(m_state->database.get(), queries[number].find);
        }
        statement->reset();
        if (!statement->bind(1, rowOf(key)).next()) {
            return std::nullopt;
        }
        if (const auto content = unsealed(kind, key, statement->bytes(0))) {
            return std::string(*content);
        }
        throw SqliteError(SQLITE_CORRUPT);
    } catch (const SqliteError& error) {
        m_index.fail(error.code(), error.reason());
        m_state = nullptr;
        return std::nullopt;
    }
}

CalendarIndex::CalendarIndex(std::string folder, std::uint64_t version, Say say)
    : m_folder(std::move(folder))
    , m_say(std::move(say)) {
    ContentHash hash;
    hash.add(format);
    hash.add(version);
    m_version = static_cast<int>(hash.value() % 0x7FFFFFFEU) + 1;
}

CalendarIndex::~CalendarIndex() = default;

void CalendarIndex::say(const std::string& what) {
    if (!std::exchange(m_hasSaid, true)) {
        m_say("the index of the calendars, '" + path() + "', " + what);
    }
}

void CalendarIndex::fail(int code, const std::string& reason) {
    if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
        return; // another process writes; it is there the next time
    }
    const bool isTorn = code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
    m_isTorn = m_isTorn || isTorn;
    say(isTorn ? "is torn, and is made anew" : "is done without: " + reason);
}

void CalendarIndex::keep(std::vector<IndexEntry> entries) {
    std::error_code failure;
    if (std::filesystem::create_directories(m_folder, failure)) {
        std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all, failure);
    }
    if (failure) {
        fail(SQLITE_CANTOPEN, failure.message());
        return;
    }
    try {
        write(std::move(entries));
    } catch (const SqliteError& error) {
        fail(error.code(), error.reason());
    }
}

void CalendarIndex::write(std::vector<IndexEntry> entries) {
    if (const auto obstacle = obstacleAt(path())) {
        fail(SQLITE_CANTOPEN, *obstacle);
        return;
    }
    const SqliteDatabase database(path(),
                                  SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
    sqlite3_busy_timeout(database.get(), longestWritingWait);
    if (m_isTorn || isTooLarge(database)) {
        reset(database);
        m_isTorn = false;
    }
    // What the system has not written when it fails is torn, which shows.
    database.run("PRAGMA synchronous = OFF; PRAGMA cache_size = -8000");
    auto entry = entries.begin();
    while (entry != entries.end()) {
        SqliteTransaction transaction(database, "BEGIN IMMEDIATE");
        if (versionOf(database) != m_version) {
            database.run(withoutTables);
            database.run(tables);
            database.run(("PRAGMA user_version = " + std::to_string(m_version)).c_str());
        }
        std::size_t written = 0;
        for (; entry != entries.end() && written < largestWrite; ++entry) {
            SqliteStatement put(database.get(), queries[static_cast<std::size_t>(entry->kind)].put);
            const std::string content = sealed(entry->kind, entry->key, entry->content());
            put.bind(1, rowOf(entry->key)).bind(2, content).run();
            written += content.size();
            entry->content = nullptr; // with what it holds on to
        }
        database.run(latestOnly);
        transaction.commit();
    }
}

} // namespace quorvel::freedesktop::calendars
