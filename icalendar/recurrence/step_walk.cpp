#include "icalendar/recurrence/rule_walks.h"

#include <algorithm>

namespace quorvel::icalendar {

std::int64_t secondsOf(Frequency frequency) {
    switch (frequency) {
    case Frequency::secondly:
        return 1;
    case Frequency::minutely:
        return secondsPerMinute;
    case Frequency::hourly:
        return secondsPerHour;
    case Frequency::daily:
        return secondsPerDay;
    case Frequency::weekly:
        return secondsPerWeek;
    case Frequency::monthly:
    case Frequency::yearly:
        return 0;
    }
    return 0;
}

void walkSteps(const RecurrenceRequest& request, OccurrenceCollector& collector) {
    const RecurrenceRule& rule = request.rule;
    const std::int64_t step = rule.interval * secondsOf(rule.frequency);
    if (rule.count && !request.existingLocalTime) { // each counts, so the last one is computed
        const std::int64_t steps =
            std::min(*rule.count - 1, (collector.lastWanted() - request.start) / step);
        collector.setLastCounted(request.start + steps * step);
    }
    std::int64_t localTime =
        request.start + ceilingDivision(collector.firstWanted() - request.start, step) * step;
    for (; localTime <= collector.lastWanted() && collector.spend(1); localTime += step) {
        if (!collector.offer(localTime)) {
            return;
        }
    }
}

} // namespace quorvel::icalendar
