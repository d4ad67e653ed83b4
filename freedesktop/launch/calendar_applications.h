// How the desktop's calendar applications are told to show an event or a day.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/launch/calendar_link.h"

namespace quorvel::freedesktop {

enum class CalendarApplication { evolution, gnomeCalendar, other };

CalendarApplication calendarApplicationOfEntry(std::string_view desktopEntryName);

// What an application is given when it is started; `link` goes in place of a file, `arguments`
// behind the name of the program. Both absent: it just comes to the front.
struct CalendarOpening {
    std::optional<std::string> link;
    std::vector<std::string> arguments;
};

// `isKnownSource`: the link's calendar is one of the desktop's own, so that its event can be
// addressed. Anything else opens at its day, which is the user's: local time, and for
// GNOME Calendar written in the locale of the process.
CalendarOpening openingOf(const CalendarLink& link, CalendarApplication application,
                          bool isKnownSource);

} // namespace quorvel::freedesktop
