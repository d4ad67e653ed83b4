// From sources to snapshots, and from snapshots to events: read, or found in the index.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "freedesktop/calendars/files/calendar_files.h"
#include "freedesktop/calendars/index/calendar_index.h"
#include "freedesktop/calendars/store/store_snapshot.h"
#include "freedesktop/dates/time_zone.h"
#include "icalendar/time/zone_clock.h"

namespace quorvel::freedesktop::calendars {

struct SearchRequest {
    std::shared_ptr<StoreSnapshot> snapshot;
    std::shared_ptr<icalendar::ZoneClock> userZone;
    icalendar::Window window;        // what is searched, and known afterwards
    icalendar::Window narrow;        // in it; searched alone where the whole holds too much
    platform::EKCalendars calendars; // of the snapshot, in its order
    bool operator==(const SearchRequest&) const = default;
};

// What one calendar came to in the last search.
struct ExpandedCalendar {
    std::shared_ptr<const LoadedCalendar> calendar;
    std::shared_ptr<const platform::EKCalendar> name; // that the events bear
    platform::EKEvents events;
    std::vector<VersionedProblem> problems;
    icalendar::CalendarCost cost;
};

// For one thread at a time.
class CalendarReader {
public:
    CalendarReader();
    ~CalendarReader(); // keeps what is still to be kept
    CalendarReader(const CalendarReader&) = delete;
    CalendarReader& operator=(const CalendarReader&) = delete;

    void setSources(std::vector<CalendarSource> sources);
    void setIndex(std::unique_ptr<CalendarIndex> index);
    void setFileClock(std::function<std::int64_t()> clock);

    // The calendars as they are on disk now; the same object for as long as nothing changes.
    std::shared_ptr<StoreSnapshot> refresh();
    std::shared_ptr<const SearchResult> search(const SearchRequest& request);
    // From any thread: what is being read is left, and all that is read from here on is nothing.
    void cancel() { m_isCancelled = true; }
    bool isCancelled() const { return m_isCancelled; }
    // Puts into the index what was worked out since the last time.
    void keep();
    // Where the index alone has answered: reads the calendars too, so that only what changes from
    // here on is to be read then.
    void load();

private:
    Signature look();
    std::shared_ptr<StoreSnapshot> keptSnapshot(const Signature& seen);
    std::shared_ptr<StoreSnapshot> read(const Signature& seen);
    void readFiles();
    void readAll(const std::vector<UnreadFile>& unread);
    void readWithinRoom(const std::vector<UnreadFile>& unread);
    static std::optional<std::string> keptBytes(const UnreadFile& one,
                                                CalendarIndex::Reading& reading);
    static bool takeKept(const UnreadFile& one, std::string_view bytes, std::size_t mostBytes);
    void keepFile(const UnreadFile& one);
    std::size_t bytesInMemory();
    const LoadedCalendars& loaded(StoreSnapshot& snapshot);
    std::optional<SearchResult> keptSearch(const SearchRequest& request);
    SearchResult expand(const SearchRequest& request);
    bool expandWithin(const icalendar::Window& window, const SearchRequest& request);
    bool expandAll(const SearchRequest& request, std::vector<ExpandedCalendar> before);
    ExpandedCalendar expandOne(const SearchRequest& request,
                               const std::shared_ptr<LoadedCalendar>& calendar,
                               const std::shared_ptr<const platform::EKCalendar>& name,
                               icalendar::SearchCost& cost);

    std::map<std::pair<std::string, std::optional<std::string>>, std::unique_ptr<CalendarFiles>>
        m_known; // those that were asked for before stay, with what was read
    std::vector<CalendarFiles*> m_current;
    bool m_isAllOnDisk = true; // no text in memory among the current ones
    icalendar::ZoneNames m_zones{zoneDirectory()};
    std::atomic<bool> m_isCancelled = false;
    ReadContext m_context;
    std::shared_ptr<StoreSnapshot> m_latest;
    std::vector<ExpandedCalendar> m_expanded; // for the zone and window that follow
    std::shared_ptr<icalendar::ZoneClock> m_expandedZone;
    icalendar::Window m_expandedWindow;
    std::unique_ptr<CalendarIndex> m_index; // may be null
    std::vector<IndexEntry> m_toBeKept;
};

} // namespace quorvel::freedesktop::calendars
