// The interface to time zones (RFC 5545 3.2.19 names them, 3.6.5 defines them): from an instant to
// the offset that a zone has then, and from a zone's local time to an instant.
#pragma once

#include <cstdint>
#include <string>

#include "base/civil_calendar.h"

namespace quorvel::icalendar {

// Instants are whole seconds since 1970-01-01T00:00:00Z, no further from it than this: some 300,000
// years.
inline constexpr std::int64_t farthestInstant = 10'000'000'000'000;

// Immutable and shared: from any thread.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    virtual const std::string& identifier() const = 0;    // IANA, or a calendar's own
    virtual int offsetAt(std::int64_t instant) const = 0; // seconds east of UTC
    // A local time that the clock skips is moved forward by the gap; of two instants with the same
    // local time it is the second.
    virtual std::int64_t instant(const CivilTime& localTime) const = 0;

    CivilTime localTime(std::int64_t instant) const {
        return civilFromSeconds(instant + offsetAt(instant));
    }
};

} // namespace quorvel::icalendar
