// What was worked out before, kept on disk: content by key, for all processes of a user. Nothing is
// lost where there is none.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/content_hash.h"

namespace quorvel::freedesktop::calendars {

enum class IndexKind { file, snapshot, search };

// What is to be kept. The content is asked for when it is written.
struct IndexEntry {
    IndexKind kind = IndexKind::file;
    Signature key;
    std::function<std::string()> content;
};

// For one thread at a time. Other processes are waited for a few milliseconds at most. What does
// not work is said once, and the index done without; one that is torn, or was made by another
// version of the program, is made anew when something is to be kept.
class CalendarIndex {
public:
    using Say = std::function<void(const std::string&)>;

    // The folder need not exist. `version`: of the program that worked the contents out.
    CalendarIndex(std::string folder, std::uint64_t version, Say say);
    ~CalendarIndex();
    CalendarIndex(const CalendarIndex&) = delete;
    CalendarIndex& operator=(const CalendarIndex&) = delete;

    // What is found by one of these is of one moment. Shorter-lived than the index.
    class Reading {
    public:
        explicit Reading(CalendarIndex& index);
        ~Reading();
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;
        // As it was kept, byte for byte.
        std::optional<std::string> find(IndexKind kind, const Signature& key);

    private:
        struct State;
        CalendarIndex& m_index;
        std::unique_ptr<State> m_state; // null: there is nothing to be read
    };

    // Instead of what was kept by the same keys. Of snapshots and searches the latest stay.
    void keep(std::vector<IndexEntry> entries);

private:
    std::string path() const { return m_folder + "/calendars.sqlite"; }
    void say(const std::string& what);
    void fail(int code, const std::string& reason); // an error of the database
    void write(std::vector<IndexEntry> entries);

    std::string m_folder;
    int m_version; // above 0
    Say m_say;
    bool m_hasSaid = false;
    bool m_isTorn = false;
};

} // namespace quorvel::freedesktop::calendars
