// The index is one SQLite database. A checksum of the key and the content is stored with each
// content, so that damage is always noticed; SQLite's journal restores the database after a process
// was killed.
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

#include "freedesktop/calendars/sqlite/sqlite.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr int format = 1;          // of the tables and their contents
constexpr int longestReadWait = 5; // milliseconds
constexpr int longestWriteWait = 50;
constexpr std::int64_t largestIndex = std::int64_t{256} << 20U; // bytes
constexpr std::size_t largestWrite = std::size_t{1}
                                     << 20U; // in a transaction, unless one content is larger

constexpr const char* createTables = "CREATE TABLE file(id INTEGER PRIMARY KEY, content BLOB);"
                                     "CREATE TABLE snapshot(id INTEGER PRIMARY KEY, content BLOB,"
                                     " made INTEGER DEFAULT(julianday('now') * 86400000));"
                                     "CREATE TABLE search(id INTEGER PRIMARY KEY, content BLOB,"
                                     " made INTEGER DEFAULT(julianday('now') * 86400000));";
constexpr const char* dropTables =
    "DROP TABLE IF EXISTS file; DROP TABLE IF EXISTS snapshot; DROP TABLE IF EXISTS search;";
constexpr const char* deleteOldEntries =
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

// Two keys may share a row: the checksum distinguishes them.
std::int64_t rowOf(const Signature& key) {
    return static_cast<std::int64_t>(key.first);
}

std::uint64_t checksumOf(IndexKind kind, const Signature& key, std::string_view content) {
    ContentHash hash;
    hash.add(static_cast<int>(kind));
    hash.add(key.first);
    hash.add(key.second);
    hash.add(content);
    return hash.value();
}

std::string withChecksum(IndexKind kind, const Signature& key, std::string content) {
    const std::uint64_t checksum = checksumOf(kind, key, content);
    content.insert(0, sizeof checksum, '\0');
    std::memcpy(content.data(), &checksum, sizeof checksum);
    return content;
}

// Absent where the content is damaged.
std::optional<std::string_view> withoutChecksum(IndexKind kind, const Signature& key,
                                                std::string_view bytes) {
    std::uint64_t checksum = 0;
    if (bytes.size() < sizeof checksum) {
        return std::nullopt;
    }
    std::memcpy(&checksum, bytes.data(), sizeof checksum);
    const std::string_view content = bytes.substr(sizeof checksum);
    return checksum == checksumOf(kind, key, content) ? std::optional(content) : std::nullopt;
}

int versionOf(SqliteDatabase& database) {
    return static_cast<int>(database.number("PRAGMA user_version"));
}

bool isTooLarge(SqliteDatabase& database) {
    return database.number("PRAGMA page_count") * database.number("PRAGMA page_size") >
           largestIndex;
}

// Makes the database empty, whatever it contains.
void reset(SqliteDatabase& database) {
    database.set(SQLITE_DBCONFIG_RESET_DATABASE, true);
    database.run("VACUUM");
    database.set(SQLITE_DBCONFIG_RESET_DATABASE, false);
}

// What is at the path. The folders above it may be links, as a home folder may be.
struct FileStatus {
    std::optional<std::string> obstacle; // why nothing must be opened
    bool exists = false;                 // as a regular file
    std::pair<dev_t, ino_t> identity;
};

FileStatus statusOf(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return {errno == ENOENT ? std::nullopt
                                : std::optional(std::generic_category().message(errno)),
                false,
                {}};
    }
    if (!S_ISREG(status.st_mode)) {
        return {"it is not a regular file", false, {}};
    }
    return {std::nullopt, true, {status.st_dev, status.st_ino}};
}

} // namespace

struct CalendarIndex::Connection {
    Connection(const std::string& path, const FileStatus& file)
        : identity(file.identity)
        , database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX) {
        database.waitForLocks(longestReadWait);
    }

    // Releases the lock and most of the memory. The file cannot be another one with the same inode
    // as long as it is open.
    void rest() {
        for (auto& statement : statements) {
            if (statement) {
                statement->reset();
            }
        }
        transaction.reset();
        database.releaseMemory();
    }

    std::pair<dev_t, ino_t> identity;
    SqliteDatabase database;
    std::optional<SqliteTransaction> transaction;
    std::array<std::optional<SqliteStatement>, queries.size()> statements;
};

std::unique_ptr<CalendarIndex::Connection> CalendarIndex::takeConnection() {
    std::unique_ptr<Connection> connection = std::move(m_idle);
    const FileStatus file = statusOf(path());
    if (file.obstacle) {
        fail(SQLITE_CANTOPEN, *file.obstacle);
    }
    if (!file.exists || m_isDamaged) {
        return nullptr;
    }
    if (!connection || connection->identity != file.identity) {
        connection = std::make_unique<Connection>(path(), file);
    }
    connection->transaction.emplace(connection->database, "BEGIN");
    return connection;
}

bool CalendarIndex::isCurrent(Connection& connection) {
    const int version = versionOf(connection.database);
    if (const auto& error = connection.database.error()) {
        fail(error->code, error->reason);
        return false;
    }
    if (version != m_version && version != 0) {
        report("was written by another version of the program, and will be rebuilt");
    }
    return version == m_version;
}

CalendarIndex::Transaction::Transaction(CalendarIndex& index)
    : m_index(index)
    , m_connection(index.takeConnection()) {
    if (m_connection && !index.isCurrent(*m_connection)) {
        m_connection = nullptr;
    }
}

CalendarIndex::Transaction::~Transaction() {
    if (m_connection) {
        m_connection->rest();
        m_index.m_idle = std::move(m_connection);
    }
}

CalendarIndex::Transaction::Transaction(Transaction&&) noexcept = default;

std::optional<std::string> CalendarIndex::Transaction::find(IndexKind kind, const Signature& key) {
    if (!m_connection) {
        return std::nullopt;
    }
    SqliteDatabase& database = m_connection->database;
    const auto number = static_cast<std::size_t>(kind);
    auto& statement = m_connection->statements[number];
    if (!statement) {
        statement.emplace(database, queries[number].find);
    }
    statement->reset();
    if (statement->bind(1, rowOf(key)).next()) {
        if (const auto content = withoutChecksum(kind, key, statement->bytes(0))) {
            return std::string(*content);
        }
        database.check(SQLITE_CORRUPT);
    }
    if (const auto& error = database.error()) {
        m_index.fail(error->code, error->reason);
        m_connection = nullptr;
    }
    return std::nullopt;
}

CalendarIndex::CalendarIndex(std::string folder, std::uint64_t version, ProblemHandler onProblem)
    : m_folder(std::move(folder))
    , m_onProblem(std::move(onProblem)) {
    ContentHash hash;
    hash.add(format);
    hash.add(version);
    m_version = static_cast<int>(hash.value() % 0x7FFFFFFEU) + 1;
}

CalendarIndex::~CalendarIndex() = default;

void CalendarIndex::report(const std::string& what) {
    if (!std::exchange(m_hasReported, true)) {
        m_onProblem("the index of the calendars, '" + path() + "', " + what);
    }
}

void CalendarIndex::fail(int code, const std::string& reason) {
    if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
        return; // another process writes; the index can be used the next time
    }
    const bool isDamaged = code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
    m_isDamaged = m_isDamaged || isDamaged;
    report(isDamaged ? "is damaged, and will be rebuilt" : "cannot be used: " + reason);
}

void CalendarIndex::store(std::vector<IndexEntry> entries) {
    std::error_code failure;
    if (std::filesystem::create_directories(m_folder, failure)) {
        std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all, failure);
    }
    if (failure) {
        fail(SQLITE_CANTOPEN, failure.message());
    } else if (const auto obstacle = statusOf(path()).obstacle) {
        fail(SQLITE_CANTOPEN, *obstacle);
    } else {
        write(std::move(entries));
    }
}

void CalendarIndex::write(std::vector<IndexEntry> entries) {
    m_idle = nullptr;
    SqliteDatabase database(path(),
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
    database.waitForLocks(longestWriteWait);
    if (m_isDamaged || isTooLarge(database)) {
        reset(database);
        m_isDamaged = database.hasFailed();
    }
    // What is lost when the system fails is noticed by its checksum.
    database.run("PRAGMA synchronous = OFF; PRAGMA cache_size = -8000");
    auto entry = entries.begin();
    while (entry != entries.end() && !database.hasFailed()) {
        SqliteTransaction transaction(database, "BEGIN IMMEDIATE");
        if (versionOf(database) != m_version) {
            database.run(dropTables);
            database.run(createTables);
            database.run(("PRAGMA user_version = " + std::to_string(m_version)).c_str());
        }
        std::size_t written = 0;
        for (; entry != entries.end() && written < largestWrite && !database.hasFailed(); ++entry) {
            SqliteStatement put(database, queries[static_cast<std::size_t>(entry->kind)].put);
            const std::string content = withChecksum(entry->kind, entry->key, entry->content());
            put.bind(1, rowOf(entry->key)).bind(2, content).run();
            written += content.size();
            entry->content = nullptr; // frees what it refers to
        }
        database.run(deleteOldEntries);
        transaction.commit();
    }
    if (const auto& error = database.error()) {
        fail(error->code, error->reason);
    }
}

} // namespace quorvel::freedesktop::calendars
