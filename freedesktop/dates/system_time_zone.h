// Time zones from the machine's zone files, which are updated more often than ICU's data.
#pragma once

#include <memory>
#include <string>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop {

// Null if the machine has no such zone or the name is not a plain IANA name: parts of letters,
// digits, '_', '+' and '-' separated by slashes, starting with a capital letter. Threads may share
// the zone.
std::shared_ptr<const TimeZone> makeSystemTimeZone(const std::string& name);

// The edition of the machine's zone files, such as "# version 2025b". Empty: unknown.
std::string systemTimeZoneEdition();

} // namespace quorvel::freedesktop
