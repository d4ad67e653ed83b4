// The ways in which the occurrences of a recurrence rule are found (RFC 5545 3.3.10): by a fixed
// step, by the days of its periods, or by hours, minutes and seconds.
#pragma once

#include <cstdint>

#include "icalendar/recurrence/occurrence_collector.h"
#include "icalendar/recurrence/recurrence.h"

namespace quorvel::icalendar {

// Seconds of the unit that a frequency counts in; 0 for months and years.
std::int64_t secondsOf(Frequency frequency);

// Each offers all local times that the rule gives from the first wanted to the last one, until the
// collector wants no more.

// A rule without BY parts whose frequency has a fixed length.
void walkSteps(const RecurrenceRequest& request, OccurrenceCollector& collector);
// A rule whose frequency is daily or above.
void walkDays(const RecurrenceRequest& request, OccurrenceCollector& collector);
// A rule whose frequency is below a day.
void walkUnits(const RecurrenceRequest& request, OccurrenceCollector& collector);

} // namespace quorvel::icalendar
