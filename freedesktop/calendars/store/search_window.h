// Which window of time a store searches for a predicate.
#pragma once

#include <optional>

#include "freedesktop/dates/time_zone.h"
#include "icalendar/expansion/occurrences.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

// The predicate's range, at most four years long by the user's calendar, as on the platform. Absent
// where the range is empty.
std::optional<icalendar::Window> searchWindow(const platform::EKEventPredicate& predicate,
                                              const TimeZone& userZone);

// Whole weeks around the window, so that the searches of some days are the same one and its result
// can be cached; and whole hours, for calendars with too many events in those weeks.
icalendar::Window wholeWeeks(const icalendar::Window& window);
icalendar::Window wholeHours(const icalendar::Window& window);

// Adds those of the events that belong to the window itself.
void addEventsWithin(const icalendar::Window& window, const platform::EKEvents& events,
                     platform::EKEvents& result);

} // namespace quorvel::freedesktop::calendars
