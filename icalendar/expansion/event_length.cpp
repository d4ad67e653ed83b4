#include "icalendar/expansion/event_length.h"

#include <algorithm>

#include "base/civil_calendar.h"
#include "base/time_units.h"

namespace quorvel::icalendar {
namespace {

EventTime moved(EventTime time, std::int64_t seconds) {
    time.localTime += seconds;
    return time;
}

} // namespace

EventLength lengthOf(EventClocks& clocks, LoadedFile& file, const IcsEvent& event) {
    const EventTime& start = event.start;
    EventLength length;
    if (start.kind == TimeKind::date) {
        if (event.end) {
            // A date that ends the event is not part of it, and neither is the day of a midnight.
            length.days = dayOf(event.end->localTime - 1) + 1 - dayOf(start.localTime);
        } else if (event.duration) {
            length.days = event.duration->days +
                          (event.duration->seconds + secondsPerDay - 1) / secondsPerDay;
        }
        length.days = std::clamp<std::int64_t>(length.days, 1, mostDaysOfAnEvent);
        return length;
    }
    if (event.end) {
        EventTime end = *event.end;
        const bool isIncomplete = end.kind == TimeKind::date || end.kind == TimeKind::floating;
        if (isIncomplete) { // many leave the zone out that the start has
            end.kind = start.kind;
            end.zone = start.zone;
        }
        length.seconds =
            std::max<std::int64_t>(clocks.instantOf(file, end) - clocks.instantOf(file, start), 0);
    } else if (event.duration &&
               event.duration->days * secondsPerDay + event.duration->seconds > 0) {
        length.days = std::min(event.duration->days, mostDaysOfAnEvent);
        length.seconds = event.duration->seconds;
    }
    return length;
}

std::int64_t endOf(EventClocks& clocks, LoadedFile& file, const EventTime& start,
                   std::int64_t startInstant, const EventLength& length) {
    if (start.kind == TimeKind::date) {
        return clocks.userZone().latestInstant(
            moved(start, length.days * secondsPerDay - 1).localTime); // 23:59:59 of its last day
    }
    if (length.days == 0) {
        return startInstant + length.seconds;
    }
    const EventTime end = moved(start, length.days * secondsPerDay);
    return std::max(clocks.clockOf(file, end).earliestInstant(end.localTime) + length.seconds,
                    startInstant);
}

} // namespace quorvel::icalendar
