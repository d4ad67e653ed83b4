// A recurrence set is what the rules and dates give, less exceptions and overridden instances. Of
// each rule only what can meet the window is computed.
#include "icalendar/expansion/occurrences.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "base/time_units.h"
#include "icalendar/expansion/bounds.h"
#include "icalendar/expansion/future_overrides.h"
#include "icalendar/expansion/listed_dates.h"
#include "icalendar/expansion/rule_starts.h"

namespace quorvel::icalendar {
namespace {

std::int64_t bounded(double seconds) {
    constexpr double farthest = 2.54e11; // the year 9999 and a little more
    return static_cast<std::int64_t>(std::clamp(std::floor(seconds), -farthest, farthest));
}

// The local time at the instant, moved to the past (-1) or the future (1) by what the clock changes
// around it and a little more: a wide margin would cost dense rules their steps.
std::int64_t localTimeNear(const ZoneClock& clock, std::int64_t instant, int direction) {
    const auto offsetAt = [&clock](std::int64_t at) { return clock.localTime(at) - at; };
    const std::int64_t change =
        std::abs(offsetAt(instant - marginSeconds) - offsetAt(instant + marginSeconds));
    constexpr std::int64_t little = 60;
    return instant + offsetAt(instant) + direction * (change + little);
}

const OverrideSet* findOverrides(const Overrides& overrides, const EventReference& reference) {
    if (overrides.empty()) {
        return nullptr;
    }
    const auto found = overrides.find(reference.file->ics.slice(reference.event->uid));
    return found == overrides.end() ? nullptr : &found->second;
}

// A start is emitted once, with a period's own length before that of the event.
void sortStarts(std::vector<SeriesStart>& starts) {
    std::stable_sort(starts.begin(), starts.end(), [](const SeriesStart& a, const SeriesStart& b) {
        return std::pair(a.instant, !a.length) < std::pair(b.instant, !b.length);
    });
}

} // namespace

bool belongsTo(const Window& window, std::int64_t start, std::int64_t end) {
    const auto first = static_cast<double>(start);
    const auto last = static_cast<double>(end);
    return (last > window.from || first == window.from) && first <= window.to;
}

Expander::Expander(Window window, ZoneClock& userZone, ZoneNames& names,
                   const ExpansionProblemHandler& onProblem, SearchCost& cost)
    : m_window(window)
    , m_firstDay(dayOf(bounded(window.from)))
    , m_lastDay(dayOf(bounded(window.to)))
    , m_clocks(userZone, names, onProblem)
    , m_context{m_clocks, onProblem, cost}
    , m_overridden(m_context) {}

void Expander::expand(const EventReference& reference, const Overrides& overrides,
                      std::vector<Occurrence>& result) {
    LoadedFile& file = *reference.file;
    const IcsEvent& event = *reference.event;
    if (event.cancelled) {
        return;
    }
    const OverrideSet* const set = findOverrides(overrides, reference);
    if (event.recurrenceId) {
        if (set == nullptr || m_overridden.isInForce(reference, *set)) {
            emit(reference, event.start, lengthOf(m_clocks, file, event),
                 m_clocks.instantOf(file, *event.recurrenceId), result);
        }
    } else if (event.ruleCount > 0 || set != nullptr) {
        expandSeries(reference, set, result);
    } else {
        emit(reference, event.start, lengthOf(m_clocks, file, event), std::nullopt, result);
    }
}

void Expander::expandSeries(const EventReference& reference, const OverrideSet* overrides,
                            std::vector<Occurrence>& result) {
    const IcsEvent& event = *reference.event;
    Series series(m_context, *reference.file, event);
    setWindow(series, overrides != nullptr && !overrides->future.empty());
    const auto lines = series.file.ics.rules.cbegin() + event.firstRule;
    const auto ruleCount = std::count_if(lines, lines + event.ruleCount, [](const RuleLine& line) {
        return line.kind == RuleKind::rrule;
    });
    series.hasOneRule = ruleCount == 1;
    for (std::uint32_t i = 0; i < event.ruleCount; ++i) {
        addLine(series, lines[i]);
    }
    if (ruleCount == 0 || series.reachesStart) {
        series.addStart(m_context, event.start, std::nullopt);
    } else {
        m_context.onProblem(series.file, event.line,
                            translatable("its rules end before it starts; its start is left out"));
    }
    if (overrides != nullptr) {
        series.futureOverrides = futureOverridesOf(m_context, series, *overrides);
    }
    emitSeries(series, overrides, result);
}

// A start before the window meets it where the event lasts long enough, or is moved there.
void Expander::setWindow(Series& series, bool mayShift) {
    const std::int64_t shift = mayShift ? longestShift + marginSeconds : 0;
    const std::int64_t length = series.length.days * secondsPerDay + series.length.seconds;
    const LocalWindow& window = localWindow(series.clock);
    series.from = window.from - length - shift;
    series.to = window.to + shift;
}

const Expander::LocalWindow& Expander::localWindow(const ZoneClock& clock) {
    const auto [found, isNew] = m_localWindows.try_emplace(&clock);
    if (isNew) {
        found->second = {localTimeNear(clock, bounded(m_window.from), -1),
                         localTimeNear(clock, bounded(m_window.to), 1)};
    }
    return found->second;
}

void Expander::addLine(Series& series, const RuleLine& line) {
    switch (line.kind) {
    case RuleKind::rrule:
    case RuleKind::exrule:
        for (const std::int64_t localTime : ruleStarts(m_context, series, line)) {
            EventTime time = series.event.start;
            time.localTime = localTime;
            if (line.kind == RuleKind::rrule) {
                series.addStart(m_context, time, std::nullopt);
            } else {
                series.exclude(m_context, time);
            }
        }
        break;
    case RuleKind::rdate:
        addListedDates(m_context, series, line);
        break;
    case RuleKind::exdate:
        excludeListedDates(m_context, series, line);
        break;
    }
}

void Expander::emitSeries(Series& series, const OverrideSet* overrides,
                          std::vector<Occurrence>& result) {
    CalendarCost& cost = m_context.cost.calendar;
    const bool isRepeat = series.event.repeats || overrides != nullptr;
    sortStarts(series.starts);
    const SeriesStart* last = nullptr;
    for (const SeriesStart& start : series.starts) {
        if (cost.repeats >= m_context.cost.mostRepeats()) {
            cost.isTruncated = true;
            m_context.onProblem(
                series.file, series.event.line,
                translatable("there are too many repeats; this event's are not all shown"));
            return;
        }
        const bool isDuplicate = last != nullptr && last->instant == start.instant;
        last = &start;
        if (isDuplicate || series.exceptions.contains(start.instant, start.time) ||
            (overrides != nullptr && m_overridden.isOverridden(series, start, *overrides))) {
            continue;
        }
        const std::size_t foundBefore = cost.found;
        emitStart(series, start, isRepeat ? std::optional(start.instant) : std::nullopt, result);
        cost.repeats += cost.found - foundBefore;
    }
}

// The latest THISANDFUTURE override before the start holds for it.
void Expander::emitStart(const Series& series, const SeriesStart& start,
                         std::optional<std::int64_t> recurrence, std::vector<Occurrence>& result) {
    const auto& future = series.futureOverrides;
    const auto following = std::lower_bound(
        future.begin(), future.end(), start.instant,
        [](const FutureOverride& one, std::int64_t instant) { return one.instant < instant; });
    if (following == future.begin()) {
        emit({&series.file, &series.event}, start.time, start.length.value_or(series.length),
             recurrence, result);
        return;
    }
    const FutureOverride& latest = *std::prev(following);
    if (!latest.reference.event->cancelled) {
        emit(latest.reference, movedStart(series, start, latest),
             lengthOf(m_clocks, *latest.reference.file, *latest.reference.event), recurrence,
             result);
    }
}

void Expander::emit(const EventReference& reference, const EventTime& start,
                    const EventLength& length, std::optional<std::int64_t> recurrence,
                    std::vector<Occurrence>& result) {
    LoadedFile& file = *reference.file;
    const std::int64_t instant = m_clocks.instantOf(file, start);
    const std::int64_t end = endOf(m_clocks, file, start, instant, length);
    if (!belongsTo(m_window, instant, end)) {
        return;
    }
    CalendarCost& cost = m_context.cost.calendar;
    if (cost.found < m_context.cost.mostFound()) {
        ++cost.found;
        result.push_back(
            {&file, reference.event, instant, end, start.kind == TimeKind::date, recurrence});
    } else {
        cost.isTruncated = true;
        m_context.onProblem(
            file, reference.event->line,
            translatable("there are too many events: from this one on they are left out"));
    }
}

} // namespace quorvel::icalendar
