// Converts between the platform's dates and the whole seconds of time zones.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "icalendar/time/time_zone.h"
#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// Rounded down and limited to the range of time zones. 0 for NaN.
inline std::int64_t wholeSecondsSince1970(platform::NSDate date) {
    constexpr auto farthest = static_cast<double>(icalendar::farthestInstant);
    const double seconds = platform::timeIntervalSince1970(date);
    return std::isnan(seconds)
               ? 0
               : static_cast<std::int64_t>(std::floor(std::clamp(seconds, -farthest, farthest)));
}

// Seconds east of UTC.
inline int offsetAt(const icalendar::TimeZone& zone, platform::NSDate date) {
    return zone.offsetAt(wholeSecondsSince1970(date));
}

// Rounded down to whole seconds.
inline CivilTime localTime(const icalendar::TimeZone& zone, platform::NSDate date) {
    return zone.localTime(wholeSecondsSince1970(date));
}

inline platform::NSDate dateOf(const icalendar::TimeZone& zone, const CivilTime& localTime) {
    return platform::dateWithTimeIntervalSince1970(static_cast<double>(zone.instant(localTime)));
}

} // namespace quorvel::freedesktop
