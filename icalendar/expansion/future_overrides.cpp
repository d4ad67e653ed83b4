// Overrides that hold for what follows as well (RFC 5545 3.2.13, RANGE=THISANDFUTURE).
#include <algorithm>
#include <string>

#include "icalendar/expansion/bounds.h"
#include "icalendar/expansion/occurrences.h"

namespace quorvel::icalendar {

// A floating one is the series': many leave the zone out that the event has.
EventTime Expander::overriddenTime(const Series& series, const EventReference& reference) {
    EventTime time = *reference.event->recurrenceId;
    if (time.kind == TimeKind::floating) {
        time.kind = series.event.start.kind;
        time.zone = series.event.start.zone;
    }
    return time;
}

void Expander::addFutureOverrides(Series& series, const OverrideSet& overrides) {
    if (overrides.hasMoreFuture) {
        m_report(
            series.file, series.event.line,
            "more than " + std::to_string(mostFutureOverrides) +
                " of its overrides hold for what follows; the later ones are left out of that");
    }
    auto& result = series.futureOverrides;
    result.reserve(overrides.future.size());
    for (const EventReference& one : overrides.future) {
        result.push_back(futureOverride(series, one));
    }
    std::reverse(result.begin(), result.end()); // the newest of equals was first
    std::stable_sort(result.begin(), result.end(),
                     [](const FutureOverride& a, const FutureOverride& b) {
                         return a.instant != b.instant
                                    ? a.instant < b.instant
                                    : IcsFile::isNewer(*b.reference.event, *a.reference.event);
                     });
}

Expander::FutureOverride Expander::futureOverride(Series& series, const EventReference& reference) {
    const EventTime time = overriddenTime(series, reference);
    const EventTime& start = series.event.start;
    const std::int64_t midnight = dayOf(time.reading) * secondsPerDay;
    if (start.kind == TimeKind::date) {
        return {reference, m_userZone.platformInstant(midnight), midnight};
    }
    if (time.kind == TimeKind::date) { // that day, at the event's time
        const std::int64_t localTime =
            midnight + start.reading - dayOf(start.reading) * secondsPerDay;
        return {reference, series.clock.instant(localTime), localTime};
    }
    const bool isFloating = reference.event->recurrenceId->kind == TimeKind::floating;
    ZoneClock& clock = isFloating ? series.clock : clockOf(*reference.file, time);
    const std::int64_t instant = clock.instant(time.reading);
    return {reference, instant,
            &clock == &series.clock ? time.reading : series.clock.reading(instant)};
}

// Moved by as much as the override moves its own instance, in local time. An override in a named
// zone takes what follows there; UTC is a way to write a time and no place, so that the series'
// zone stays.
EventTime Expander::movedStart(Series& series, const Start& start, const FutureOverride& future) {
    const EventTime& from = series.event.start;
    const bool isOfTheSeries = start.time.kind == from.kind && start.time.zone == from.zone;
    const std::int64_t localTime =
        isOfTheSeries ? start.time.reading : series.clock.reading(start.instant);
    const auto movedTo = [&](std::int64_t target) {
        return localTime + std::clamp(target - future.localTime, -longestShift, longestShift);
    };
    EventTime time = future.reference.event->start;
    if (time.kind == TimeKind::date) {
        const std::int64_t timeOfDay = future.localTime - dayOf(future.localTime) * secondsPerDay;
        const std::int64_t movedDay = dayOf(movedTo(time.reading + timeOfDay));
        time.reading = movedDay * secondsPerDay;
    } else if (time.kind == TimeKind::utc && from.kind != TimeKind::date) {
        time.reading = series.clock.instant(movedTo(series.clock.reading(time.reading)));
    } else {
        time.reading = movedTo(time.reading);
    }
    return time;
}

} // namespace quorvel::icalendar
