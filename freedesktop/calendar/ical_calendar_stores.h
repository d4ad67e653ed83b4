// The user's calendars from .ics files.
//
// What a source is:
// - A file is one calendar, whatever its name ends in.
// - A folder: each folder in it that holds .ics files (or a file `color` or `displayname`) is one
//   calendar, a file an event. A folder in it that holds none of them is looked into, down to
//   sixteen levels. The .ics files that lie in the folder itself are a calendar each, unless the
//   folder is such a calendar itself: it holds a file `color` or `displayname`, or more than half
//   of its .ics files hold one event each, name no calendar, and either bear the event's UID in
//   their names or are more than 24.
// - A text in memory is one calendar, as if it were a file.
// Names that begin with a dot are passed over; only regular files are opened. Calendars come in the
// order of the sources, within one by name. The same file or folder is shown once.
//
// A calendar's title: the file `displayname`, or X-WR-CALNAME or NAME, else the name of the file or
// folder. Its colour: the file `color`, or X-APPLE-CALENDAR-COLOR or COLOR, else one of a palette.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

namespace ics {
class StoreDesk;
} // namespace ics

// Something that could not be read, or is shown otherwise than it is written.
struct CalendarProblem {
    std::string file;
    std::size_t line = 0; // 0: unknown
    std::string what;
    bool operator==(const CalendarProblem&) const = default;
};
using CalendarProblemHandler = std::function<void(const CalendarProblem&)>;

struct CalendarSource {
    std::string name;                // a path, or the name of a text
    std::optional<std::string> text; // a whole calendar in memory
    bool isOptional = false;         // nothing is amiss where it is not there

    static CalendarSource at(std::string path) { return {std::move(path), std::nullopt}; }
    static CalendarSource inMemory(std::string name, std::string text) {
        return {std::move(name), std::move(text)};
    }
};

// Of a source that is a folder: how many levels of folders are looked into, and whether a file of
// that name may say something about a calendar.
inline constexpr int deepestCalendarFolder = 16;
bool mayBelongToCalendar(std::string_view name);

// Why the source cannot be read at all; absent where it can.
std::optional<std::string> problemWithSource(const CalendarSource& source);

// The folders `calendars` in the data folder and `.calendars` at home, which need not exist. The
// arguments are the values of XDG_DATA_HOME and HOME; an empty or relative one counts as unset.
std::vector<CalendarSource> defaultCalendarSources(std::string_view xdgDataHome,
                                                   std::string_view home);

// How long a host that is alive waits for its calendars, in seconds: the first time, and later.
struct CalendarWaits {
    double first = 0.25;
    double later = 0.025;
};

// What was read stays in memory and is shared by the stores: a new store reads again what has
// changed on disk since, and nothing else. May be used from several threads; the handler is called
// on the thread that makes or asks a store, or on one of its own, once a problem and version of a
// file.
class IcalCalendarStores final : public platform::CalendarStores {
public:
    IcalCalendarStores(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem);
    // Puts into the index what is not there yet.
    ~IcalCalendarStores() override;
    IcalCalendarStores(const IcalCalendarStores&) = delete;
    IcalCalendarStores& operator=(const IcalCalendarStores&) = delete;

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
    std::shared_ptr<ics::StoreDesk> m_desk;
};

} // namespace quorvel::freedesktop
