// What was worked out about the calendars, on disk for all processes of a user: contents by key.
// The index is a cache; nothing is lost where there is none.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/content_hash.h"

namespace quorvel::freedesktop::calendars {

enum class IndexKind { file, snapshot, search };

// What is to be stored. The content is made only when it is written.
struct IndexEntry {
    IndexKind kind = IndexKind::file;
    Signature key;
    std::function<std::string()> content;
};

// Belongs to one thread. The file stays open between transactions, without a lock. It waits a few
// milliseconds at most for other processes. The first problem is reported, and the index is not
// used then; one that is damaged, or that another version of the program has written, is rebuilt by
// the next store().
class CalendarIndex {
    struct Connection;

public:
    using ProblemHandler = std::function<void(const std::string&)>;

    // The folder need not exist. `version`: of the program that works the contents out.
    CalendarIndex(std::string folder, std::uint64_t version, ProblemHandler onProblem);
    ~CalendarIndex();
    CalendarIndex(const CalendarIndex&) = delete;
    CalendarIndex& operator=(const CalendarIndex&) = delete;

    // All that one transaction finds was stored at one moment. Outlived by the index.
    class Transaction {
    public:
        explicit Transaction(CalendarIndex& index);
        ~Transaction();
        Transaction(Transaction&&) noexcept;
        Transaction& operator=(Transaction&&) = delete;
        // The bytes that were stored. Absent where there are none.
        std::optional<std::string> find(IndexKind kind, const Signature& key);

    private:
        CalendarIndex& m_index;
        std::unique_ptr<Connection> m_connection; // null where there is nothing to read
    };
    Transaction beginReading() { return Transaction(*this); }

    // Replaces what was stored with the same keys. Only the latest snapshots and searches remain.
    void store(std::vector<IndexEntry> entries);

private:
    std::string path() const { return m_folder + "/calendars.sqlite"; }
    void report(const std::string& what);
    void fail(int code, const std::string& reason); // an error of the database
    void write(std::vector<IndexEntry> entries);
    std::unique_ptr<Connection> takeConnection(); // null where there is no database
    bool isCurrent(Connection& connection);       // reports why not

    std::string m_folder;
    int m_version; // above 0
    ProblemHandler m_onProblem;
    bool m_hasReported = false;
    bool m_isDamaged = false;
    std::unique_ptr<Connection> m_idle; // of the last transaction; null: none
};

} // namespace quorvel::freedesktop::calendars
