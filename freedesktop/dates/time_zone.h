// Finds the machine's time zones by name.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "freedesktop/dates/zone_dates.h"
#include "icalendar/time/time_zone.h"
#include "icalendar/time/zone_directory.h"

namespace quorvel::freedesktop {

using icalendar::TimeZone;

// Any thread may call these functions. The zones are immutable.

// Null for an unknown name. Knows IANA names and their aliases and the identifiers of Windows, both
// also behind a prefix such as "/freeassociation.sourceforge.net/", and the display names of
// Windows, such as "(UTC+01:00) Berlin". Never uses the name as a path.
std::shared_ptr<const TimeZone> namedTimeZone(std::string_view name);
// A zone with the fixed offset at the start of a display name. Null: the name has no offset.
std::shared_ptr<const TimeZone> timeZoneOfStatedOffset(std::string_view displayName);
// Whether the name is known in exactly this spelling, upper and lower case included.
bool isExactTimeZoneName(std::string_view name);
std::shared_ptr<const TimeZone> utcTimeZone();
std::shared_ptr<const TimeZone> hostTimeZone(); // the machine's current zone

// The functions above as an interface. Lives as long as the process.
const icalendar::ZoneDirectory& zoneDirectory();

// Identifies the edition of the zones' rules: different rules have a different text.
std::string timeZoneRulesVersion();

} // namespace quorvel::freedesktop
