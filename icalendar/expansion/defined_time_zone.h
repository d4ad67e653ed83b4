// A time zone from the definition in a calendar file (RFC 5545 3.6.5, VTIMEZONE).
#pragma once

#include <memory>

#include "icalendar/model/ics_file.h"
#include "icalendar/time/time_zone.h"

namespace quorvel::icalendar {

// Null where no change of the clock can be computed. The changes from 1900 to 2100 are computed at
// once, bounded in number and time; after the last one its offset holds.
std::shared_ptr<const TimeZone> makeDefinedTimeZone(const ZoneDefinition& definition);

} // namespace quorvel::icalendar
