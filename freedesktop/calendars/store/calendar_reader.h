// Answers what stores ask: which calendars there are, and which events.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "freedesktop/calendars/store/deferred_index.h"
#include "freedesktop/calendars/store/event_search.h"
#include "freedesktop/calendars/store/snapshot_reader.h"
#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// Belongs to one thread, with all that it has parsed and cached; what it returns is immutable. Only
// cancel() may be called from any thread.
class CalendarReader {
public:
    CalendarReader() = default;
    ~CalendarReader(); // writes what is still to be stored in the index
    CalendarReader(const CalendarReader&) = delete;
    CalendarReader& operator=(const CalendarReader&) = delete;

    void setSources(std::vector<CalendarSource> sources);
    void setIndex(std::unique_ptr<CalendarIndex> index);    // may be null
    void setFileClock(std::function<std::int64_t()> clock); // nanoseconds since 1970

    // See SnapshotReader and EventSearch.
    std::shared_ptr<const StoreSnapshot> refresh();
    std::shared_ptr<const SearchResult> search(const SearchRequest& request);

    // Ends what is being read; nothing that is returned afterwards is of use.
    void cancel() { m_isCancelled = true; }
    bool isCancelled() const { return m_isCancelled; }

    // For the time in which nobody waits: writes to the index what was worked out, and reads the
    // calendars of a snapshot that came from the index, so that a later change costs no more than
    // the changed file. Frees what nobody uses any more.
    void prepareForNextRequest();

private:
    std::atomic<bool> m_isCancelled = false;
    DeferredIndex m_index;
    // Never absent before the destructor runs.
    std::optional<SnapshotReader> m_snapshots{std::in_place, m_index, m_isCancelled};
    std::optional<EventSearch> m_search{std::in_place, *m_snapshots, m_index};
    std::shared_ptr<const StoreSnapshot> m_latest; // null before the first refresh
};

} // namespace quorvel::freedesktop::calendars
