// The machine's time zones by name.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "freedesktop/dates/zone_dates.h"
#include "icalendar/time/time_zone.h"
#include "icalendar/time/zone_directory.h"

namespace quorvel::freedesktop {

using icalendar::TimeZone;

// All of these may be called from any thread.

// Null where the name is known to nobody. Known are IANA names and their aliases, the names of
// Windows, either behind a prefix such as "/freeassociation.sourceforge.net/", and the names that
// Windows shows, such as "(UTC+01:00) Berlin". The name is never used as a path.
std::shared_ptr<const TimeZone> namedTimeZone(std::string_view name);
// The fixed offset that a name begins with which Windows could show; null without one.
std::shared_ptr<const TimeZone> timeZoneOfStatedOffset(std::string_view displayName);
// Whether the name is known as it is written, and not only in another case.
bool isExactTimeZoneName(std::string_view name);
std::shared_ptr<const TimeZone> utcTimeZone();
std::shared_ptr<const TimeZone> hostTimeZone(); // the machine's own, read afresh

// The functions above, for the calendars; it lives as long as the process.
const icalendar::ZoneDirectory& zoneDirectory();

// Which editions of the zones' rules these are: another text, other rules.
std::string timeZoneRulesVersion();

} // namespace quorvel::freedesktop
