// The copies of calendars on servers, in the user's cache: one folder a URL, named by a hash of it,
// with the calendar and what is known about the server's answers.
#pragma once

#include <cstdint>
#include <string>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop {

// What is known about a copy. Times are seconds since 1970.
struct CopyState {
    std::int64_t confirmedAt = 0; // when the server last had what the copy has; 0: never
    std::int64_t triedAt = 0;     // when the server was last asked; 0: never
    TranslatableText error;       // of the last try, such as "the server cannot be reached"
    TranslatableText toDo;        // about the error; may be empty
    bool mayPass = false;         // the error: trying again later may help
    std::string calendarName;     // as the calendar calls itself; may be empty
    std::string entityTag;        // the server's; may be empty
    std::string lastModified;     // likewise
    std::uint64_t size = 0;       // of the copy that these belong to, in bytes
    bool operator==(const CopyState&) const = default;
};

// May be used by several processes at once: files are replaced as a whole. Nothing is lost when the
// folder is deleted.
class SubscriptionCache {
public:
    // The folder need not exist. An empty one stores nothing.
    explicit SubscriptionCache(std::string folder)
        : m_folder(std::move(folder)) {}

    const std::string& folder() const { return m_folder; }
    std::string folderOf(const std::string& url) const;
    std::string calendarFile(const std::string& url) const;
    std::string stateFile(const std::string& url) const;

    bool hasCopy(const std::string& url) const;
    // A state that cannot be read is one without any knowledge.
    CopyState readState(const std::string& url) const;
    // The folder of the URL exists.
    Result<void> writeState(const std::string& url, const CopyState& state) const;
    // Readable by the user alone.
    Result<void> makeFolder(const std::string& url) const;
    void remove(const std::string& url) const; // the copy and its state

private:
    std::string m_folder;
};

// $XDG_CACHE_HOME/quorvel/subscriptions; empty: the user has no folder for caches.
std::string userSubscriptionFolder();

// The parts of the file that holds a state.
std::string textOfState(const CopyState& state);
CopyState stateOfText(std::string_view text);

} // namespace quorvel::freedesktop
