// A time zone from the definition that a calendar file brings along (RFC 5545 3.6.5).
#pragma once

#include <memory>

#include "icalendar/model/ics_file.h"
#include "icalendar/time/time_zone.h"

namespace quorvel::icalendar {

// Null where the definition says nothing usable. Its changes are worked out to the year 2100, and
// bounded in number and time; what follows them keeps the last offset.
std::shared_ptr<const TimeZone> makeDefinedTimeZone(const ZoneDefinition& definition);

} // namespace quorvel::icalendar
