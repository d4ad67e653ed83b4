// The bounds of the expansion of recurrence sets (RFC 5545 3.8.5, 3.2.13), in seconds unless their
// names state another unit.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/time_units.h"
#include "icalendar/model/zone_margin.h"

namespace quorvel::icalendar {

// No local time, as seconds since 1970 as if it were UTC, lies further from its instant.
inline constexpr std::int64_t marginSeconds = zoneMarginDays * secondsPerDay;
// The farthest that an override with RANGE=THISANDFUTURE moves the instances that follow its own.
inline constexpr std::int64_t longestShift = 400 * secondsPerDay;

// Overrides with RANGE=THISANDFUTURE of one UID; later ones replace their own instance alone.
inline constexpr std::size_t mostFutureOverrides = 100;

} // namespace quorvel::icalendar
