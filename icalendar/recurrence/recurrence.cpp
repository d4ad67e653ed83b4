#include "icalendar/recurrence/recurrence.h"

#include "icalendar/recurrence/occurrence_collector.h"
#include "icalendar/recurrence/rule_walks.h"

namespace quorvel::icalendar {
namespace {

bool isBelowDay(Frequency frequency) {
    return frequency < Frequency::daily;
}

// An occurrence every so many seconds, and nothing else.
bool hasFixedStep(const RecurrenceRule& rule, bool wholeDays) {
    return rule.frequency <= Frequency::weekly && !rule.hasDateParts() && rule.positions.empty() &&
           (wholeDays || !rule.hasTimeParts());
}

void expand(const RecurrenceRequest& request, OccurrenceCollector& collector) {
    const RecurrenceRule& rule = request.rule;
    if (!collector.addStart()) {
        return;
    }
    if (request.wholeDays && isBelowDay(rule.frequency)) {
        collector.setProblem(translatable("whole days cannot recur within a day"));
    } else if (hasFixedStep(rule, request.wholeDays)) {
        walkSteps(request, collector);
    } else if (isBelowDay(rule.frequency)) {
        walkUnits(request, collector);
    } else {
        walkDays(request, collector);
    }
}

} // namespace

RecurrenceStarts expandRecurrence(const RecurrenceRequest& request) {
    OccurrenceCollector collector(request, OccurrenceCollector::Purpose::collect);
    expand(request, collector);
    return collector.takeResult();
}

CountEnd endOfCount(const RecurrenceRequest& request) {
    OccurrenceCollector collector(request, OccurrenceCollector::Purpose::findEndOfCount);
    expand(request, collector);
    return collector.endOfCount();
}

} // namespace quorvel::icalendar
