// Where the user's calendars are.
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

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::freedesktop {

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

} // namespace quorvel::freedesktop
