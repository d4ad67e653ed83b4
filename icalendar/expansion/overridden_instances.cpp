#include "icalendar/expansion/overridden_instances.h"

#include <limits>
#include <utility>

#include "icalendar/expansion/listed_dates.h"

namespace quorvel::icalendar {

bool OverriddenInstances::isInForce(const EventReference& reference, const OverrideSet& set) {
    const std::int64_t instant =
        m_context.clocks.instantOf(*reference.file, *reference.event->recurrenceId);
    return instancesOf(set).newest.at(instant) == reference.event && !isTakenBack(reference, set);
}

bool OverriddenInstances::isTakenBack(const EventReference& reference, const OverrideSet& set) {
    const IcsEvent* const mainEvent = set.mainEvent.event;
    if (mainEvent == nullptr) {
        return false;
    }
    if (mainEvent->cancelled) {
        return reference.event->sequence <= mainEvent->sequence;
    }
    if (reference.event->sequence >= mainEvent->sequence) {
        return false;
    }
    const EventTime& time = *reference.event->recurrenceId;
    return exceptionsOfMainEvent(set).contains(m_context.clocks.instantOf(*reference.file, time),
                                               time);
}

bool OverriddenInstances::isOverridden(const Series& series, const SeriesStart& start,
                                       const OverrideSet& set) {
    const Instances& instances = instancesOf(set);
    const std::int64_t day = dayOf(start.time.localTime);
    if (series.event.start.kind == TimeKind::date) {
        return instances.days.count(day) != 0;
    }
    const auto isFloating = [&](std::int64_t localTime) {
        return instances.floating.count(localTime) != 0 &&
               series.clock.earliestInstant(localTime) == start.instant;
    };
    return instances.dates.count(day) != 0 || instances.instants.count(start.instant) != 0 ||
           (!instances.floating.empty() && (isFloating(start.time.localTime) ||
                                            isFloating(series.clock.localTime(start.instant))));
}

const OverriddenInstances::Instances& OverriddenInstances::instancesOf(const OverrideSet& set) {
    const auto [found, isNew] = m_instances.try_emplace(&set);
    Instances& instances = found->second;
    if (!isNew) {
        return instances;
    }
    for (const EventReference& one : set.all) {
        const EventTime& time = *one.event->recurrenceId;
        const std::int64_t instant = m_context.clocks.instantOf(*one.file, time);
        const IcsEvent*& newest = instances.newest.try_emplace(instant, one.event).first->second;
        if (IcsFile::isNewer(*one.event, *newest)) {
            newest = one.event;
        }
        instances.days.insert(dayOf(time.localTime));
        if (time.kind == TimeKind::date) {
            instances.dates.insert(dayOf(time.localTime));
        } else if (time.kind == TimeKind::floating) {
            instances.floating.insert(time.localTime);
        } else {
            instances.instants.insert(instant);
        }
    }
    return instances;
}

const Exceptions& OverriddenInstances::exceptionsOfMainEvent(const OverrideSet& set) {
    const auto [found, isNew] = m_exceptions.try_emplace(&set);
    if (isNew) {
        LoadedFile& file = *set.mainEvent.file;
        const IcsEvent& event = *set.mainEvent.event;
        Series series(m_context, file, event);
        series.from = std::numeric_limits<std::int64_t>::min() / 2;
        series.to = std::numeric_limits<std::int64_t>::max() / 2;
        for (std::uint32_t i = 0; i < event.ruleCount; ++i) {
            const RuleLine& line = file.ics.rules[event.firstRule + i];
            if (line.kind == RuleKind::exdate) {
                excludeListedDates(m_context, series, line);
            }
        }
        found->second = std::move(series.exceptions);
    }
    return found->second;
}

} // namespace quorvel::icalendar
