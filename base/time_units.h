// How many seconds the fixed units of time have. A day of a time zone's clock may be shorter or
// longer.
#pragma once

#include <cstdint>

namespace quorvel {

inline constexpr std::int64_t secondsPerMinute = 60;
inline constexpr std::int64_t secondsPerHour = 60 * secondsPerMinute;
inline constexpr std::int64_t secondsPerDay = 24 * secondsPerHour;
inline constexpr std::int64_t secondsPerWeek = 7 * secondsPerDay;

} // namespace quorvel
