// The times of day that a recurrence rule admits (RFC 5545 3.3.10): its BYHOUR, BYMINUTE and
// BYSECOND, completed by the time of the event's start. Times are seconds since midnight, or since
// the beginning of an hour, minute or second.
#pragma once

#include <cstdint>
#include <vector>

#include "icalendar/recurrence/recurrence_rule.h"

namespace quorvel::icalendar {

// Of a rule whose frequency is daily or above; sorted.
std::vector<std::int64_t> timesOfDay(const RecurrenceRule& rule, std::int64_t startTimeOfDay);

// Of one hour, minute or second of a rule with that frequency: what its finer parts make of it;
// sorted.
std::vector<std::int64_t> timesOfUnit(const RecurrenceRule& rule, std::int64_t startTimeOfDay);

// Of a rule whose frequency is below a day: the time itself, where the parts of its frequency and
// the coarser ones admit it; else a later time before which they admit none. That may be midnight.
std::int64_t nextAdmittedTime(const RecurrenceRule& rule, std::int64_t timeOfDay);

} // namespace quorvel::icalendar
