// The user's calendars in .ics files, behind the platform's interface. What a source is:
// freedesktop/calendars/files/calendar_source.h.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

namespace calendars {
class CalendarService;
} // namespace calendars

// How long a live host waits for its calendars, in seconds: the first time, and later.
struct CalendarWaits {
    double first = 0.25;
    double later = 0.025;
};

// The stores share what was read: a new store reads only what has changed on disk since. Belongs to
// the thread that made it, as do its stores. The handler of problems is called once for each
// problem and version of a file, on that thread, or on a worker thread where waits are bounded.
class FileCalendarStores final : public platform::CalendarStores {
public:
    FileCalendarStores(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem);
    // Writes to the index what it does not have yet.
    ~FileCalendarStores() override;
    FileCalendarStores(const FileCalendarStores&) = delete;
    FileCalendarStores& operator=(const FileCalendarStores&) = delete;

    // Both apply to the stores made from now on.
    void setSources(std::vector<CalendarSource> sources);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone);

    // Before the first store. The index in that folder, which all programs of the user share, has
    // the contents of unchanged files, so that they need not be read. Texts in memory are not
    // stored in it. The first problem with the index is reported.
    void setIndex(const std::string& folder, std::function<void(const std::string&)> onProblem);

    // Before the first store. The clock with which the times of files are compared, in nanoseconds
    // since 1970, called on any thread; by default the system's. A file that was written less than
    // two seconds before it was read is read again.
    void setFileClock(std::function<std::int64_t()> clock);

    // Before the first store. Bounds the time that making and asking a store takes: what could not
    // be read by then is as it was in the store before, or missing at first. A worker thread reads
    // on.
    void setWaits(CalendarWaits waits);
    // Called on the worker thread when calendars or events that were late are available. Null:
    // none.
    void setChangedHandler(std::function<void()> onChanged);

    // Of the sources that are files and folders; not all of them need exist.
    const std::vector<std::string>& paths() const;

    // Where waits are bounded: lets the worker thread start to read, without waiting. The next
    // store uses what it read.
    void beginReading();

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // Whether at least one source could be read when the last store was made; false before that,
    // and true while it is not known yet.
    bool anyReadable() const;
    // Whether the last store had a calendar that could be read; likewise.
    bool anyCalendar() const;
    // What the user calls the place of that calendar of the last store: the path of its file or
    // folder. Empty: there is no such calendar.
    std::string storeOf(std::string_view identifier) const;
    // The identifiers of those of the last store's calendars that the program which has them does
    // not show.
    std::vector<std::string> deselectedCalendars() const;
    // The files, folders and sources that could not be read at all when the last store was made, as
    // far as it is known. Also those that were reported before.
    std::vector<CalendarProblem> unreadable() const;
    // Whether the last store shows less than there is, or what there was before, because reading
    // took longer than the waits.
    bool isLate() const;

private:
    class Store;
    std::shared_ptr<calendars::CalendarService> m_service;
};

} // namespace quorvel::freedesktop
