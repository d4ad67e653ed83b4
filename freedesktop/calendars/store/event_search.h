// From requests to events: found in the index, or expanded.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "freedesktop/calendars/store/calendar_expansion.h"
#include "freedesktop/calendars/store/deferred_index.h"
#include "freedesktop/calendars/store/snapshot_reader.h"
#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the reader's thread. The calendars of the last search stay expanded, so that the next
// one of the same window expands only those that have changed.
class EventSearch {
public:
    // Both outlive it.
    EventSearch(SnapshotReader& snapshots, DeferredIndex& index);

    std::shared_ptr<const SearchResult> search(const SearchRequest& request);

private:
    struct CachedCalendar {
        std::shared_ptr<const LoadedCalendar> calendar;
        std::shared_ptr<const platform::EKCalendar> owner; // of the events
        ExpandedCalendar expanded;
    };

    std::optional<SearchResult> storedResult(const SearchRequest& request);
    SearchResult expand(const SearchRequest& request);
    bool expandWithin(const icalendar::Window& window, const SearchRequest& request);
    bool expandCalendars(const SearchRequest& request, std::vector<CachedCalendar> previous);
    void useTimeZone(const std::shared_ptr<const TimeZone>& zone);

    SnapshotReader& m_snapshots;
    DeferredIndex& m_index;
    icalendar::ZoneNames m_zones{zoneDirectory()};
    std::unique_ptr<icalendar::ZoneClock> m_userZone; // null before the first expansion
    std::shared_ptr<const TimeZone> m_zone;           // that of m_userZone
    std::vector<CachedCalendar> m_cached;             // for m_zone and m_window
    icalendar::Window m_window;
};

} // namespace quorvel::freedesktop::calendars
