// Between the local times of a zone and instants (RFC 5545 3.3.5), for searches that ask for the
// same days again and again.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "icalendar/time/time_zone.h"
#include "icalendar/time/zone_directory.h"

namespace quorvel::icalendar {

// Caches the offsets of days on which the clock does not change. For one thread at a time.
class ZoneClock {
public:
    explicit ZoneClock(std::shared_ptr<const TimeZone> zone);

    // Instants are seconds since 1970; local times are seconds since 1970 as if the local time were
    // UTC. A local time that the clock skips is moved forward by the gap.

    // Of two instants with the same local time the first, as RFC 5545 3.3.5 wants it.
    std::int64_t earliestInstant(std::int64_t localTime);
    // The local time itself, or for a skipped one, the one moved forward by the gap.
    std::int64_t existingLocalTime(std::int64_t localTime);
    // Of two instants with the same local time the second, as the platform's calendar computes it.
    std::int64_t latestInstant(std::int64_t localTime);
    std::int64_t localTime(std::int64_t instant) const;
    const TimeZone& zone() const { return *m_zone; }

private:
    // The local times that the clock skips: from begin up to, but not including, end.
    struct Gap {
        std::int64_t begin = 0;
        std::int64_t end = 0;
    };

    const std::optional<int>& steadyOffset(std::int64_t day);
    Gap gapAround(std::int64_t day);

    std::shared_ptr<const TimeZone> m_zone;
    std::unordered_map<std::int64_t, std::optional<int>> m_offsets; // by day
    std::unordered_map<std::int64_t, Gap> m_gaps;                   // of those days without one
};

// The zones of a directory by name, each looked up once. For one thread at a time.
class ZoneNames {
public:
    explicit ZoneNames(const ZoneDirectory& directory); // which outlives it

    std::shared_ptr<ZoneClock> named(std::string_view name); // null: known nowhere
    const ZoneDirectory& directory() const { return m_directory; }

private:
    const ZoneDirectory& m_directory;
    std::map<std::string, std::shared_ptr<ZoneClock>, std::less<>> m_zones;
};

} // namespace quorvel::icalendar
