// Where the user's calendars are.
//
// A source is one of these:
// - A file is one calendar, whatever its name ends in.
// - A folder: each folder in it that holds .ics files, or a file `color` or `displayname`, is one
//   calendar with an event in each file. A folder without any is searched for further folders, down
//   to sixteen levels. Each .ics file in the source's own folder is a calendar, unless that folder
//   is itself one calendar: it holds a file `color` or `displayname`, or more than half of its .ics
//   files hold a single event, name no calendar, and either are named after the event's UID or are
//   more than 24.
// - The name "thunderbird:", alone or with a folder behind it, means what Thunderbird stores; see
//   freedesktop/calendars/thunderbird/profiles.h.
// - A text in memory is one calendar, as if it were a file.
// - A file that is a copy of a calendar elsewhere is one calendar, named after that. It may be
//   missing.
// Names that begin with a dot are ignored; only regular files are opened. Calendars come in the
// order of the sources, and by name within a source. The same file or folder is shown once.
//
// A calendar's title is that in the file `displayname`, or X-WR-CALNAME or NAME, else the name of
// the file or folder. Its colour is that in the file `color`, or X-APPLE-CALENDAR-COLOR or COLOR,
// else one of a palette.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop {

// The calendar elsewhere that a file is a copy of.
//
// The order is of a named type: `auto` would need operator<=> of std::optional, which not every
// standard library has.
struct CopiedCalendar {
    std::string origin;                // decides the calendar's identifier, as a path does else
    std::string host;                  // the title of a calendar that has none
    std::optional<std::string> title;  // replaces that in the file
    std::optional<std::string> colour; // likewise, as calendarColour() reads it
    std::string label;                 // names the calendar in messages
    // NOLINTNEXTLINE(modernize-use-nullptr): no pointer
    std::strong_ordering operator<=>(const CopiedCalendar&) const = default;
};

struct CalendarSource {
    std::string name;                // a path, or the name of a text
    std::optional<std::string> text; // a whole calendar in memory
    bool isOptional = false;         // no problem is reported where the path does not exist
    std::optional<CopiedCalendar> copy = std::nullopt; // present: the path is that of a copy
    // NOLINTNEXTLINE(modernize-use-nullptr): no pointer
    std::strong_ordering operator<=>(const CalendarSource&) const = default;

    static CalendarSource at(std::string path) { return {std::move(path), std::nullopt}; }
    static CalendarSource inMemory(std::string name, std::string text) {
        return {std::move(name), std::move(text)};
    }
};

// How many levels of folders are searched below a source that is a folder.
inline constexpr int deepestCalendarFolder = 16;
// Whether a file with that name can change a calendar.
bool mayBelongToCalendar(std::string_view name);

// Fails where the source cannot be read at all. The error's `what` is a sentence about "it", the
// source.
Result<void, TranslatableText> checkSource(const CalendarSource& source);

// The folders `calendars` in the data folder and `.calendars` at home, which need not exist. The
// arguments are the values of XDG_DATA_HOME and HOME; an empty or relative one counts as unset.
std::vector<CalendarSource> defaultCalendarSources(std::string_view xdgDataHome,
                                                   std::string_view home);

} // namespace quorvel::freedesktop
