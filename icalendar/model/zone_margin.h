// How far local times and UTC lie apart (RFC 5545 3.3.14, UTC-OFFSET).
#pragma once

#include <cstdint>

namespace quorvel::icalendar {

// No zone lies more than a day off UTC, so the local times of two zones at one instant, the user's
// among them, lie at most this far apart.
inline constexpr std::int64_t zoneMarginDays = 2;

} // namespace quorvel::icalendar
