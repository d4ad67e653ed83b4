// What all stores share: the calendars as last read, the last search, and the thread that reads
// where nobody is to wait for long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "freedesktop/calendars/store/calendar_reader.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"

namespace quorvel::freedesktop::calendars {

// Says each problem once.
class ToldProblems {
public:
    explicit ToldProblems(CalendarProblemHandler tell);

    void tell(const std::vector<VersionedProblem>& problems);
    // These are all that there are now. Of what has no version: what is gone, and comes back, is
    // said again.
    void tellAll(const std::vector<VersionedProblem>& problems);

private:
    CalendarProblemHandler m_tell;
    std::unordered_set<std::uint64_t> m_told; // by their hashes
    std::unordered_set<std::uint64_t> m_withoutVersion;
};

// For several threads: one mutex guards the reader and the reported problems, the other all that
// follows it.
class CalendarService {
public:
    using Clock = std::chrono::steady_clock;

    // What one store is made of.
    struct View {
        std::shared_ptr<StoreSnapshot> snapshot; // never null
        std::shared_ptr<icalendar::ZoneClock> userZone;
        Clock::time_point deadline; // of all that is asked of it
    };

    CalendarService(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem);
    ~CalendarService();
    CalendarService(const CalendarService&) = delete;
    CalendarService& operator=(const CalendarService&) = delete;

    // As those of the stores.
    void setSources(std::vector<CalendarSource> sources);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone);
    void setIndex(std::unique_ptr<CalendarIndex> index);
    void setFileClock(std::function<std::int64_t()> clock);
    void setWaits(CalendarWaits waits);
    void follow(std::function<void()> changed);
    std::vector<std::string> paths() const;
    bool isAnyReadable() const;
    bool isAnyCalendar() const;

    // Where waits are bounded: starts reading the calendars on the worker's thread. The next
    // refresh() uses what is read then.
    void beginReading();
    // The calendars as they are on disk now, as far as they are read in time.
    View refresh();
    // Null where nothing is found in time. The request is of that view.
    std::shared_ptr<const SearchResult> search(const View& view, const SearchRequest& request);

private:
    std::shared_ptr<StoreSnapshot> refreshNow();
    std::shared_ptr<const SearchResult> searchNow(const SearchRequest& request);
    Clock::time_point nextDeadline();
    std::uint64_t askWorker();
    void letWorkerFinish(std::unique_lock<std::mutex>& lock, Clock::time_point deadline,
                         std::uint64_t ticket);
    void work();
    void doWhatIsWanted();
    bool isAnswered(const SearchRequest& request) const;
    std::optional<SearchRequest> requestAfterRefresh() const;

    // Held while anything is read; always taken before the other.
    std::mutex m_readerMutex;
    CalendarReader m_reader;
    ToldProblems m_told;

    mutable std::mutex m_mutex; // over all that follows; never held for long
    std::shared_ptr<icalendar::ZoneClock> m_userZone;
    std::vector<std::string> m_paths; // of the sources that are not texts
    std::optional<std::vector<CalendarSource>> m_newSources;
    std::shared_ptr<StoreSnapshot> m_snapshot; // null before the first refresh
    std::optional<SearchRequest> m_request;    // the last one that was answered
    std::shared_ptr<const SearchResult> m_result;

    // Where waits are bounded.
    std::optional<CalendarWaits> m_waits;
    std::function<void()> m_changed;
    bool m_hasWaited = false;
    bool m_isRefreshWanted = false;
    bool m_isSearchWanted = false;
    std::optional<SearchRequest> m_wanted; // the last one, answered or not
    std::optional<std::uint64_t> m_begun;  // the ticket of beginReading(), until it is used
    std::uint64_t m_asked = 0;
    std::uint64_t m_done = 0;
    bool m_isMissed = false; // somebody has gone on without it
    bool m_isStopping = false;
    std::condition_variable m_work;
    std::condition_variable m_finished;
    std::thread m_worker;
};

} // namespace quorvel::freedesktop::calendars
