// The time zones by the names that calendars use (RFC 5545 3.2.19, TZID).
#pragma once

#include <memory>
#include <string_view>

#include "icalendar/time/time_zone.h"

namespace quorvel::icalendar {

// Implementations may be called from any thread. A zone is null where there is none.
class ZoneDirectory {
public:
    virtual ~ZoneDirectory() = default;

    virtual std::shared_ptr<const TimeZone> named(std::string_view name) const = 0;
    // Whether named() has a zone for exactly this spelling, and not only in another case.
    virtual bool isExactName(std::string_view name) const = 0;
    // The fixed offset that a displayed name begins with, such as "(UTC+01:00) Berlin".
    virtual std::shared_ptr<const TimeZone> ofStatedOffset(std::string_view displayName) const = 0;
};

} // namespace quorvel::icalendar
