// How the desktop's calendar applications are made to show an event or a day.
#pragma once

#include <string_view>

#include "freedesktop/launch/calendar_link.h"
#include "freedesktop/launch/launch_arguments.h"

namespace quorvel::freedesktop {

enum class CalendarApplication { evolution, gnomeCalendar, other };

CalendarApplication calendarApplicationOfEntry(std::string_view desktopEntryName);

struct CalendarApplicationState {
    // The link's calendar is one of the desktop's own, so the application can find the event.
    bool knowsCalendar = false;
    bool isRunning = false;
};

// An event of an unknown calendar opens at its day in local time. GNOME Calendar expects the date
// in the format of the process's locale. An Evolution that is not running shows no window for an
// event alone, so it opens the event's day first.
LaunchArguments argumentsToOpen(const CalendarLink& link, CalendarApplication application,
                                CalendarApplicationState state);

} // namespace quorvel::freedesktop
