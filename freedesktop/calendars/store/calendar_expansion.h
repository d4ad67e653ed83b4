// The occurrences of one calendar in a window, as the platform's events.
#pragma once

#include <memory>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/loaded_calendar.h"
#include "icalendar/expansion/occurrences.h"
#include "icalendar/expansion/search_cost.h"
#include "icalendar/time/zone_clock.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

struct ExpandedCalendar {
    platform::EKEvents events;              // in no particular order
    std::vector<VersionedProblem> problems; // each once
    icalendar::CalendarCost cost;
};

// What an expansion needs beside the calendar. All of it outlives the call.
struct ExpansionContext {
    icalendar::Window window;
    icalendar::ZoneClock& userZone;
    icalendar::ZoneNames& zones;
    icalendar::SearchCost& cost; // grows; endCalendar() is the caller's
};

// The events belong to `owner`, whose identifier theirs begin with. The calendar's caches grow.
ExpandedCalendar expandCalendar(const ExpansionContext& context, const LoadedCalendar& calendar,
                                const std::shared_ptr<const platform::EKCalendar>& owner);

} // namespace quorvel::freedesktop::calendars
