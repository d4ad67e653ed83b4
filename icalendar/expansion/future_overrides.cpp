#include "icalendar/expansion/future_overrides.h"

#include <algorithm>
#include <string>

#include "base/time_units.h"
#include "icalendar/expansion/bounds.h"

namespace quorvel::icalendar {
namespace {

// A floating one is the series': many leave the zone out that the event has.
EventTime overriddenTime(const Series& series, const EventReference& reference) {
    EventTime time = *reference.event->recurrenceId;
    if (time.kind == TimeKind::floating) {
        time.kind = series.event.start.kind;
        time.zone = series.event.start.zone;
    }
    return time;
}

FutureOverride futureOverride(EventClocks& clocks, const Series& series,
                              const EventReference& reference) {
    const EventTime time = overriddenTime(series, reference);
    const EventTime& start = series.event.start;
    const std::int64_t midnight = dayOf(time.localTime) * secondsPerDay;
    if (start.kind == TimeKind::date) {
        return {reference, clocks.userZone().latestInstant(midnight), midnight};
    }
    if (time.kind == TimeKind::date) { // that day, at the event's time
        const std::int64_t localTime =
            midnight + start.localTime - dayOf(start.localTime) * secondsPerDay;
        return {reference, series.clock.earliestInstant(localTime), localTime};
    }
    const bool isFloating = reference.event->recurrenceId->kind == TimeKind::floating;
    ZoneClock& clock = isFloating ? series.clock : clocks.clockOf(*reference.file, time);
    const std::int64_t instant = clock.earliestInstant(time.localTime);
    return {reference, instant,
            &clock == &series.clock ? time.localTime : series.clock.localTime(instant)};
}

} // namespace

std::vector<FutureOverride> futureOverridesOf(ExpansionContext& context, const Series& series,
                                              const OverrideSet& overrides) {
    if (overrides.hasMoreFuture) {
        context.onProblem(series.file, series.event.line,
                          {translatable("more than {1} of its overrides hold for what follows; the "
                                        "later ones are left out of that"),
                           {TranslatableText::verbatim(std::to_string(mostFutureOverrides))}});
    }
    std::vector<FutureOverride> result;
    result.reserve(overrides.future.size());
    for (const EventReference& one : overrides.future) {
        result.push_back(futureOverride(context.clocks, series, one));
    }
    std::reverse(result.begin(), result.end()); // the newest of equals was first
    std::stable_sort(result.begin(), result.end(),
                     [](const FutureOverride& a, const FutureOverride& b) {
                         return a.instant != b.instant
                                    ? a.instant < b.instant
                                    : IcsFile::isNewer(*b.reference.event, *a.reference.event);
                     });
    return result;
}

// An override in a named zone moves what follows into that zone. UTC is a way to write a time and
// no place, so that the series' zone stays.
EventTime movedStart(const Series& series, const SeriesStart& start, const FutureOverride& future) {
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
