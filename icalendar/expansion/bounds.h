// The bounds that the parts of the expansion share.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/time_units.h"
#include "icalendar/model/zone_margin.h"

namespace quorvel::icalendar {

// No local time lies further from its instant, in any zone.
inline constexpr std::int64_t marginSeconds = zoneMarginDays * secondsPerDay;
// How far an override for what follows as well can move an instance.
inline constexpr std::int64_t longestShift = 400 * secondsPerDay;

// Of one UID; the later ones count for their own instance alone.
inline constexpr std::size_t mostFutureOverrides = 100;

} // namespace quorvel::icalendar
