// The store of calendars in .ics files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
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

// How long a host that is alive waits for its calendars, in seconds: the first time, and later.
struct CalendarWaits {
    double first = 0.25;
    double later = 0.025;
};

// What was read stays in memory and is shared by the stores: a new store reads again what has
// changed on disk since, and nothing else. May be used from several threads; the handler is called
// on the thread that makes or asks a store, or on one of its own, once a problem and version of a
// file.
class FileCalendarStores final : public platform::CalendarStores {
public:
    FileCalendarStores(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem);
    // Puts into the index what is not there yet.
    ~FileCalendarStores() override;
    FileCalendarStores(const FileCalendarStores&) = delete;
    FileCalendarStores& operator=(const FileCalendarStores&) = delete;

    // Both hold for the stores made from now on.
    void setSources(std::vector<CalendarSource> sources);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone);

    // Before the first store. An index in that folder, for all programs of the user, says what an
    // unchanged file holds without its being read. Texts in memory are not kept. What is wrong with
    // the index is said once.
    void setIndex(const std::string& folder, std::function<void(const std::string&)> say);

    // Before the first store. The clock that the files' times are compared with, in nanoseconds
    // since 1970, from any thread: a file that was written within two seconds of being read is read
    // again. The system's unless it is set.
    void setFileClock(std::function<std::int64_t()> clock);

    // Before the first store. Stores are made and asked in bounded time: where the calendars are
    // not read by then they show what they showed before, and nothing at first. Who follows is told
    // when the rest is there.
    void setWaits(CalendarWaits waits);
    // From a thread of the stores' own. Null: nobody follows.
    void follow(std::function<void()> changed);

    // Of the sources that are files and folders; not all of them need exist.
    std::vector<std::string> paths() const;

    // Where waits are set: starts reading the calendars on a thread of the stores' own, without
    // waiting. The next store uses what is read then.
    void beginReading();

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // Whether at least one source could be read when the last store was made; false before that.
    // True while it is not known yet.
    bool anyReadable() const;
    // Whether the last store had a calendar that could be read; likewise.
    bool anyCalendar() const;

private:
    class Store;
    std::shared_ptr<calendars::CalendarService> m_desk;
};

} // namespace quorvel::freedesktop
