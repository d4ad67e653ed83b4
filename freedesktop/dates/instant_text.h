// Parses and formats instants as in RFC 3339.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/dates/time_zone.h"
#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// "2026-03-10T10:00:00Z", also with a fraction, an offset ("+01:00", "+0100", "+01"), without
// seconds, or with a space for the "T". Without an offset it is local time in `zone`; a date alone
// means its local midnight. Years 0001 to 9999. Absent: the text is not such an instant.
std::optional<platform::NSDate> parseInstant(std::string_view text, const TimeZone& zone);

// "2026-03-10T10:00:00+01:00": whole seconds, always with a numeric offset ("+00:00" for UTC).
std::string rfc3339(platform::NSDate date, const TimeZone& zone);

} // namespace quorvel::freedesktop
