// Periods of the rule's frequency follow each other; each gives its days, the days their times, and
// BYSETPOS picks among them.
#include <algorithm>
#include <vector>

#include "icalendar/recurrence/rule_day_search.h"
#include "icalendar/recurrence/rule_periods.h"
#include "icalendar/recurrence/rule_times.h"
#include "icalendar/recurrence/rule_walks.h"
#include "icalendar/recurrence/set_positions.h"

namespace quorvel::icalendar {
namespace {

class DayWalk final : private ExistenceTest {
public:
    DayWalk(const RecurrenceRequest& request, OccurrenceCollector& collector)
        : m_request(request)
        , m_rule(request.rule)
        , m_collector(collector)
        , m_startDay(floorDivision(request.start, secondsPerDay))
        , m_days(request.rule, m_startDay)
        , m_search(m_days, collector)
        , m_positions(request.rule.positions) {}

    void run() {
        m_collector.setExistenceTest(this);
        if (!makeTimes()) {
            return;
        }
        if (m_rule.frequency == Frequency::daily) {
            walkEvery(m_rule.interval);
        } else if (m_rule.interval == 1 && !hasPositions()) {
            walkEvery(1); // where a period ends does not matter
        } else {
            walkPeriods();
        }
    }

private:
    bool hasPositions() const { return !m_rule.positions.empty(); }

    bool makeTimes() {
        const std::int64_t startTime = m_request.start - m_startDay * secondsPerDay;
        if (m_request.wholeDays || !m_rule.hasTimeParts()) {
            m_times = {m_request.wholeDays ? 0 : startTime};
            return true;
        }
        m_times = timesOfDay(m_rule, startTime);
        return !m_times.empty() &&
               m_collector.spend(static_cast<std::int64_t>(m_times.size()) / timesPerStep);
    }

    void walkEvery(std::int64_t interval) {
        const std::int64_t last = m_collector.lastWantedDay();
        const auto firstFrom = [&](std::int64_t day) {
            return m_startDay + ceilingDivision(day - m_startDay, interval) * interval;
        };
        std::int64_t day = firstFrom(m_collector.firstWantedDay());
        while (const auto next = m_search.next(day, last)) {
            day = firstFrom(*next);
            if (day == *next) {
                if (!offerDay(day)) {
                    return;
                }
                day += interval;
            }
        }
    }

    void walkPeriods() {
        const RulePeriods periods(m_rule, m_startDay);
        for (std::int64_t index = periods.indexBefore(m_collector.firstWantedDay());; ++index) {
            const RulePeriod period = periods.at(index);
            if (period.firstDay > m_collector.lastWantedDay() || !m_collector.spend(1) ||
                !(hasPositions() ? offerPositions(period) : offerDays(period))) {
                return;
            }
        }
    }

    // A day that is a period of its own, or one of several without positions.
    bool offerDay(std::int64_t day) {
        const std::int64_t midnight = day * secondsPerDay;
        if (hasPositions()) {
            return m_positions.offer(
                m_times.size(), [&](std::size_t index) { return midnight + m_times[index]; },
                m_collector);
        }
        const auto first =
            std::lower_bound(m_times.begin(), m_times.end(), m_collector.firstWanted() - midnight);
        return std::all_of(first, m_times.end(),
                           [&](std::int64_t time) { return m_collector.offer(midnight + time); });
    }

    bool offerDays(const RulePeriod& period) {
        const std::int64_t last = std::min(period.lastDay, m_collector.lastWantedDay());
        std::int64_t day = std::max(period.firstDay, m_collector.firstWantedDay());
        while (const auto next = m_search.next(day, last)) {
            if (!offerDay(*next)) {
                return false;
            }
            day = *next + 1;
        }
        return !m_collector.hasEnded();
    }

    bool offerPositions(const RulePeriod& period) {
        m_midnights.clear();
        std::int64_t day = period.firstDay;
        while (const auto next = m_search.next(day, period.lastDay)) {
            m_midnights.push_back(*next * secondsPerDay);
            day = *next + 1;
        }
        const std::size_t perDay = m_times.size();
        const auto localTimeAt = [&](std::size_t index) {
            return m_midnights[index / perDay] + m_times[index % perDay];
        };
        return !m_collector.hasEnded() &&
               m_positions.offer(m_midnights.size() * perDay, localTimeAt, m_collector);
    }

    // Whether the rule admits any day at all, and its longest period reaches a position.
    bool hasAnyOccurrence() const override {
        const auto longest = static_cast<std::int64_t>(m_times.size()) * longestPeriod(m_rule);
        return RuleDays(m_rule, m_startDay).includesAny() &&
               (!hasPositions() || m_positions.areWithin(longest));
    }

    const RecurrenceRequest& m_request;
    const RecurrenceRule& m_rule;
    OccurrenceCollector& m_collector;
    std::int64_t m_startDay;
    RuleDays m_days;
    RuleDaySearch m_search;
    SetPositions m_positions;
    std::vector<std::int64_t> m_times;     // of a day, sorted
    std::vector<std::int64_t> m_midnights; // of the days of one period
};

} // namespace

void walkDays(const RecurrenceRequest& request, OccurrenceCollector& collector) {
    DayWalk(request, collector).run();
}

} // namespace quorvel::icalendar
