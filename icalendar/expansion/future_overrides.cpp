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
    const std::int64_t midnight = dayOf(time.localTime) * secondsPerDay;
    if (start.kind == TimeKind::date) {
        return {reference, m_userZone.latestInstant(midnight), midnight};
    }
    if (time.kind == TimeKind::date) { // that day, at the event's time
        const std::int64_t localTime =
            midnight + start.localTime - dayOf(start.localTime) * secondsPerDay;
        return {reference, series.clock.earliestInstant(localTime), localTime};
    }
    const bool isFloating = reference.event->recurrenceId->kind == TimeKind::floating;
    ZoneClock& clock = isFloating ? series.clock : clockOf(*reference.file, time);
    const std::int64_t instant = clock.earliestInstant(time.localTime);
    return {reference, instant,
            &clock == &series.clock ? time.localTime : series.clock.localTime(instant)};
}

// Moved by as much as the override moves its own instance, in local time. An override in a named
// zone takes what follows there; UTC is a way to write a time and no place, so that the series'
// zone stays.
EventTime Expander::movedStart(Series& series, const Start& start, const FutureOverride& future) {
    const EventTime& from = series.event.start;
    const bool isOfTheSeries = start.time.kind == from.kind && start.time.zone == from.zone;
    const std::int64_t localTime =
        isOfTheSeries ? start.time.localTime : series.clock.localTime(start.instant);
    const auto movedTo = [&](std::int64_t target) {
        return localTime + std::clamp(target - future.localTime, -longestShift, longestShift);
    };
    EventTime time = future.reference.event->start;
    if (time.kind == TimeKind::date) {
        const std::int64_t timeOfDay = future.localTime - dayOf(future.localTime) * secondsPerDay;
        const std::int64_t movedDay = dayOf(movedTo(time.localTime + timeOfDay));
        time.localTime = movedDay * secondsPerDay;
    } else if (time.kind == TimeKind::utc && from.kind != TimeKind::date) {
        time.localTime =
            series.clock.earliestInstant(movedTo(series.clock.localTime(time.localTime)));
    } else {
        time.localTime = movedTo(time.localTime);
    }
    return time;
}

} // namespace quorvel::icalendar
