// The next day that a recurrence rule admits (RFC 5545 3.3.10), within the budget of steps.
#pragma once

#include <cstdint>
#include <optional>

#include "icalendar/recurrence/occurrence_collector.h"
#include "icalendar/recurrence/rule_days.h"

namespace quorvel::icalendar {

// Days are counted since 1970-01-01. Both arguments must outlive it.
class RuleDaySearch {
public:
    RuleDaySearch(RuleDays& days, OccurrenceCollector& collector)
        : m_days(days)
        , m_collector(collector) {}

    // The first admitted day from this one to the last. Absent: there is none, or the walk has to
    // end.
    std::optional<std::int64_t> next(std::int64_t day, std::int64_t last) {
        while (day <= last && m_collector.spend(m_days.knowsMonthOf(day) ? 1 : stepsOfMonth)) {
            const std::int64_t candidate = m_days.nextCandidate(day);
            if (m_days.knowsMonthOf(candidate)) {
                return candidate <= last ? std::optional(candidate) : std::nullopt;
            }
            day = candidate;
        }
        return std::nullopt;
    }

private:
    // A month's days are computed in the time of so many other steps.
    static constexpr std::int64_t stepsOfMonth = 8;

    RuleDays& m_days;
    OccurrenceCollector& m_collector;
};

} // namespace quorvel::icalendar
