// Instants as text, the way RFC 3339 writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/dates/time_zone.h"
#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// "2026-03-10T10:00:00Z", also with a fraction, an offset ("+01:00", "+0100", "+01"), without
// seconds, or with a space for the "T". Without an offset it is wall time in `zone`; a date alone
// is its local midnight. Years 0001 to 9999. Absent for anything else.
std::optional<platform::NSDate> parseInstant(std::string_view text, const TimeZone& zone);

// "2026-03-10T10:00:00+01:00": whole seconds, always with a numeric offset ("+00:00" for UTC).
std::string rfc3339(platform::NSDate date, const TimeZone& zone);

} // namespace quorvel::freedesktop
