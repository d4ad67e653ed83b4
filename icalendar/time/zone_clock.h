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

// Remembers the offset of days on which the clock does not change. Not for several threads at once.
class ZoneClock {
public:
    explicit ZoneClock(std::shared_ptr<const TimeZone> zone);

    // Wall-clock readings are in seconds since 1970 as if they were ones of UTC.

    // As calendars mean it: of two instants with the same local time, the first; a local time that
    // the clock skips is moved forward by the gap. In seconds since 1970.
    std::int64_t instant(std::int64_t reading);
    // What the clock shows for it: the same, or for one that it skips, the one moved by the gap.
    std::int64_t shown(std::int64_t reading);
    // As the platform means it: of two instants with the same local time, the second.
    std::int64_t platformInstant(std::int64_t reading);
    std::int64_t reading(std::int64_t seconds) const; // at the instant
    const TimeZone& zone() const { return *m_zone; }

private:
    // Readings that are leapt over: from the first one to the one behind the last.
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

// The zones that are known by name, each looked up once. Not for several threads at once.
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
