// Hours, minutes or seconds follow each other. The walk leaps over those that the coarser parts of
// the rule exclude.
#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "icalendar/recurrence/rule_day_search.h"
#include "icalendar/recurrence/rule_times.h"
#include "icalendar/recurrence/rule_walks.h"
#include "icalendar/recurrence/set_positions.h"

namespace quorvel::icalendar {
namespace {

class UnitWalk final : private ExistenceTest {
public:
    UnitWalk(const RecurrenceRequest& request, OccurrenceCollector& collector)
        : m_rule(request.rule)
        , m_collector(collector)
        , m_startDay(floorDivision(request.start, secondsPerDay))
        , m_days(request.rule, m_startDay)
        , m_search(m_days, collector)
        , m_positions(request.rule.positions)
        , m_times(timesOfUnit(request.rule, request.start - m_startDay * secondsPerDay))
        , m_step(secondsOf(request.rule.frequency) * request.rule.interval)
        , m_firstUnit(request.start -
                      floorRemainder(request.start, secondsOf(request.rule.frequency))) {}

    void run() {
        m_collector.setExistenceTest(this);
        std::int64_t begin = m_firstUnit;
        begin += std::max<std::int64_t>(m_collector.firstWanted() - begin, 0) / m_step * m_step;
        while (begin <= m_collector.lastWanted() && m_collector.spend(1)) {
            const std::int64_t admitted = nextAdmitted(begin);
            if (m_collector.hasEnded() || (admitted <= begin && !offerUnit(begin))) {
                break;
            }
            const std::int64_t distance = admitted - begin;
            begin += distance <= m_step ? m_step : ceilingDivision(distance, m_step) * m_step;
        }
    }

private:
    // The beginning of the unit where the coarser parts admit it; else a later local time before
    // which they admit none.
    std::int64_t nextAdmitted(std::int64_t localTime) {
        if (localTime - m_admittedMidnight >= secondsPerDay) { // local times only grow
            const std::int64_t day = floorDivision(localTime, secondsPerDay);
            const auto next = m_search.next(day, m_collector.lastWantedDay());
            if (next != day) {
                return next.value_or(m_collector.lastWantedDay() + 1) * secondsPerDay;
            }
            m_admittedMidnight = day * secondsPerDay;
        }
        return m_admittedMidnight + nextAdmittedTime(m_rule, localTime - m_admittedMidnight);
    }

    // What the finer parts make of one hour, minute or second.
    bool offerUnit(std::int64_t begin) {
        if (!m_rule.positions.empty()) {
            return m_positions.offer(
                m_times.size(), [&](std::size_t index) { return begin + m_times[index]; },
                m_collector);
        }
        return std::all_of(m_times.begin(), m_times.end(),
                           [&](std::int64_t time) { return m_collector.offer(begin + time); });
    }

    // Whether its parts admit anything at all, on any day, at any time that the walk comes to: from
    // day to day it comes to the same times, this far from each other.
    bool hasAnyOccurrence() const override {
        if (m_times.empty() || !RuleDays(m_rule, m_startDay).includesAny() ||
            (!m_rule.positions.empty() &&
             !m_positions.areWithin(static_cast<std::int64_t>(m_times.size())))) {
            return false;
        }
        const std::int64_t spacing = std::gcd(m_step, secondsPerDay);
        const std::int64_t first = floorRemainder(m_firstUnit, spacing);
        for (std::int64_t time = first; time < secondsPerDay; time += spacing) {
            if (nextAdmittedTime(m_rule, time) == time) {
                return true;
            }
        }
        return false;
    }

    const RecurrenceRule& m_rule;
    OccurrenceCollector& m_collector;
    std::int64_t m_startDay;
    RuleDays m_days;
    RuleDaySearch m_search;
    SetPositions m_positions;
    std::vector<std::int64_t> m_times; // of an hour, minute or second, sorted
    std::int64_t m_step;               // from one unit to the next that counts, in seconds
    std::int64_t m_firstUnit;          // the local time at which the start's unit begins
    // Of the latest admitted day; at first one long before all local times.
    std::int64_t m_admittedMidnight = std::numeric_limits<std::int64_t>::min() / 2;
};

} // namespace

void walkUnits(const RecurrenceRequest& request, OccurrenceCollector& collector) {
    UnitWalk(request, collector).run();
}

} // namespace quorvel::icalendar
