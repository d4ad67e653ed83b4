// The latest snapshot and search result, for the stores that show them.
#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// For several threads: a mutex guards everything.
class LatestAnswers {
public:
    void setSnapshot(std::shared_ptr<const StoreSnapshot> snapshot); // may be null
    void setResult(const SearchRequest& request, std::shared_ptr<const SearchResult> result);

    std::shared_ptr<const StoreSnapshot> snapshot() const; // null: nothing was read yet
    // Null where the latest search did not have the same result.
    std::shared_ptr<const SearchResult> resultFor(const SearchRequest& request) const;
    // Null where the latest search had another window.
    std::shared_ptr<const SearchResult> resultInWindow(const icalendar::Window& window) const;

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const StoreSnapshot> m_snapshot;
    std::optional<SearchRequest> m_request;
    std::shared_ptr<const SearchResult> m_result; // of m_request
};

} // namespace quorvel::freedesktop::calendars
