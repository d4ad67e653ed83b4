// How the desktop's calendar applications are made to show an event or a day.
#pragma once

#include <string_view>

#include "freedesktop/launch/calendar_link.h"
#include "freedesktop/launch/launch_arguments.h"

namespace quorvel::freedesktop {

enum class CalendarApplication { evolution, gnomeCalendar, other };

CalendarApplication calendarApplicationOfEntry(std::string_view desktopEntryName);

// `isKnownSource`: the link's calendar is one of the desktop's own, so the application can find the
// event. Otherwise it shows the day in local time. GNOME Calendar expects the date in the format of
// the process's locale.
LaunchArguments argumentsToOpen(const CalendarLink& link, CalendarApplication application,
                                bool isKnownSource);

} // namespace quorvel::freedesktop
