// A stored event as the text of an iCalendar, so that the rules by which calendars are read hold
// for it too.
#pragma once

#include <string>

#include "freedesktop/calendars/thunderbird/event_row.h"
#include "freedesktop/calendars/thunderbird/event_zones.h"

namespace quorvel::freedesktop::thunderbird {

// A whole VEVENT with the line ends of an iCalendar. Empty where the event has no start within the
// years 1 to 9999. No text of the row can begin a line of its own.
std::string eventText(const EventRow& row, EventZones& zones);

} // namespace quorvel::freedesktop::thunderbird
