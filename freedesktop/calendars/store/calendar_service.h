// What all stores of a program share: the reader of the calendars, and where waits are bounded the
// thread that it works on.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "freedesktop/calendars/store/calendar_reader.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/calendars/store/latest_answers.h"
#include "freedesktop/calendars/store/reported_problems.h"
#include "freedesktop/calendars/store/request_queue.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the thread that made it. Its worker, where there is one, owns the reader and the
// reported problems; the two threads share the queue of requests and the latest answers alone.
class CalendarService {
public:
    using Clock = RequestQueue::Clock;

    // What one store shows.
    struct View {
        std::shared_ptr<const StoreSnapshot> snapshot; // never null
        std::shared_ptr<const TimeZone> userZone;      // never null
        Clock::time_point deadline;                    // of everything that the store is asked
    };

    CalendarService(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem);
    ~CalendarService(); // ends the worker, and what it is reading
    CalendarService(const CalendarService&) = delete;
    CalendarService& operator=(const CalendarService&) = delete;

    // These are documented with FileCalendarStores.
    void setSources(std::vector<CalendarSource> sources);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone);
    void setIndex(std::unique_ptr<CalendarIndex> index);
    void setFileClock(std::function<std::int64_t()> clock);
    void setWaits(CalendarWaits waits);
    void setChangedHandler(std::function<void()> onChanged);
    const std::vector<std::string>& paths() const { return m_paths; }
    bool isAnyReadable() const;
    bool isAnyCalendar() const;
    bool isLate() const { return m_isLate; }
    std::string storeOf(std::string_view identifier) const;
    std::vector<std::string> deselectedCalendars() const;
    std::vector<CalendarProblem> unreadable() const;
    void beginReading();

    // The calendars as they are on disk now, as far as they could be read in time.
    View refresh();
    // Null where no events could be found in time. The request is of that view.
    std::shared_ptr<const SearchResult> search(const View& view, const SearchRequest& request);

private:
    std::shared_ptr<const StoreSnapshot> readSnapshot(std::optional<std::vector<CalendarSource>>);
    std::shared_ptr<const SearchResult> readEvents(const SearchRequest& request);
    void startWorker();
    void work();
    void answer(RequestQueue::Batch& batch);
    Clock::time_point nextDeadline();

    std::shared_ptr<const TimeZone> m_userZone;
    std::vector<std::string> m_paths;                        // of the sources that are not texts
    std::optional<std::vector<CalendarSource>> m_newSources; // not yet passed on to the reader
    std::optional<CalendarWaits> m_waits;                    // absent: waits are not bounded
    bool m_hasWaited = false;
    bool m_isLate = false;                       // an answer to the latest view
    std::optional<RequestQueue::Ticket> m_begun; // of beginReading(), until a refresh uses it

    RequestQueue m_queue;
    LatestAnswers m_answers;

    // Of the worker as soon as it runs, but for CalendarReader::cancel().
    CalendarReader m_reader;
    ReportedProblems m_problems;

    std::thread m_worker;
};

} // namespace quorvel::freedesktop::calendars
