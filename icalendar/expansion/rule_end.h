// Where a rule's UNTIL ends it (RFC 5545 3.3.10).
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "icalendar/expansion/bounds.h"
#include "icalendar/text/property_values.h"
#include "icalendar/time/zone_clock.h"

namespace quorvel::icalendar {

// The last local time that UNTIL admits, and where UNTIL is in UTC, the last instant. Around a
// change of the clock the orders of local times and instants differ. Local times are seconds since
// 1970 as if they were UTC. The clock must outlive it.
class RuleEnd {
public:
    RuleEnd(const std::optional<TimeValue>& until, bool wholeDays, ZoneClock& clock)
        : m_clock(clock) {
        if (!until) {
            return;
        }
        m_lastLocalTime = civilSeconds(until->civil);
        if (until->isDate) { // the whole of that day
            m_lastLocalTime = (civilDays(until->civil) + 1) * secondsPerDay - 1;
        }
        if (until->isUtc && !wholeDays) {
            m_lastInstant = m_lastLocalTime;
            m_lastLocalTime = clock.localTime(*m_lastInstant) + marginSeconds;
        }
    }

    // Absent: UNTIL is absent. Where UNTIL is in UTC it may be somewhat later than the last time.
    const std::optional<std::int64_t>& lastLocalTime() const { return m_lastLocalTime; }

    bool admits(std::int64_t localTime) const {
        return (!m_lastLocalTime || localTime <= *m_lastLocalTime) &&
               (!m_lastInstant || m_clock.earliestInstant(localTime) <= *m_lastInstant);
    }

    // Removes the local times behind the end from sorted ones.
    void truncate(std::vector<std::int64_t>& localTimes) const {
        if (!m_lastLocalTime) {
            return;
        }
        const auto firstToTest = std::lower_bound(localTimes.begin(), localTimes.end(),
                                                  *m_lastLocalTime - 2 * marginSeconds);
        localTimes.erase(std::remove_if(firstToTest, localTimes.end(),
                                        [this](std::int64_t one) { return !admits(one); }),
                         localTimes.end());
    }

private:
    ZoneClock& m_clock;
    std::optional<std::int64_t> m_lastLocalTime;
    std::optional<std::int64_t> m_lastInstant;
};

} // namespace quorvel::icalendar
