// A recurrence set is what the rules and dates give, less exceptions and overridden instances. Of
// each rule only what can meet the window is worked out.
#include "icalendar/expansion/occurrences.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <tuple>
#include <utility>

#include "base/time_units.h"
#include "icalendar/expansion/bounds.h"
#include "icalendar/expansion/rule_end.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {
namespace {

constexpr std::int64_t mostDays = 4000000;
// The steps of a rule once a search has spent all that it may.
constexpr std::int64_t fewSteps = 2'000;

std::int64_t bounded(double seconds) {
    constexpr double farthest = 2.54e11; // the year 9999 and a little more
    return static_cast<std::int64_t>(std::clamp(std::floor(seconds), -farthest, farthest));
}

EventTime moved(EventTime time, std::int64_t seconds) {
    time.localTime += seconds;
    return time;
}

} // namespace

bool belongsTo(const Window& window, std::int64_t start, std::int64_t end) {
    const auto first = static_cast<double>(start);
    const auto last = static_cast<double>(end);
    return (last > window.from || first == window.from) && first <= window.to;
}

Expander::Expander(Window window, ZoneClock& userZone, ZoneNames& names,
                   const ExpansionProblemHandler& report, SearchCost& cost)
    : m_window(window)
    , m_firstDay(dayOf(bounded(window.from)))
    , m_lastDay(dayOf(bounded(window.to)))
    , m_userZone(userZone)
    , m_names(names)
    , m_utc(std::make_shared<ZoneClock>(names.directory().named("UTC")))
    , m_report(report)
    , m_cost(cost) {}

void Expander::expand(const EventReference& reference, const Overrides& overrides,
                      std::vector<Occurrence>& result) {
    LoadedFile& file = *reference.file;
    const IcsEvent& event = *reference.event;
    if (event.cancelled) {
        return;
    }
    const OverrideSet* set = nullptr;
    if (!overrides.empty()) {
        const auto found = overrides.find(file.ics.slice(event.uid));
        set = found == overrides.end() ? nullptr : &found->second;
    }
    if (event.recurrenceId) {
        if (set == nullptr || (isNewest(reference, *set) && !isTakenBack(reference, *set))) {
            emit(file, event, event.start, lengthOf(file, event),
                 instantOf(file, *event.recurrenceId), result);
        }
    } else if (event.ruleCount > 0 || set != nullptr) {
        expandSeries(file, event, set, result);
    } else {
        emit(file, event, event.start, lengthOf(file, event), std::nullopt, result);
    }
}

// Of those that override the same instant.
bool Expander::isNewest(const EventReference& reference, const OverrideSet& set) {
    const std::int64_t instant = instantOf(*reference.file, *reference.event->recurrenceId);
    return overridden(set).newest.at(instant) == reference.event;
}

// By the main event: cancelled since, or without this instance since.
bool Expander::isTakenBack(const EventReference& reference, const OverrideSet& set) {
    const EventReference& mainEvent = set.mainEvent;
    if (mainEvent.event == nullptr) {
        return false;
    }
    if (mainEvent.event->cancelled) {
        return reference.event->sequence <= mainEvent.event->sequence;
    }
    if (reference.event->sequence >= mainEvent.event->sequence) {
        return false;
    }
    const EventTime& time = *reference.event->recurrenceId;
    const Exceptions& exceptions = exceptionsOf(set);
    return exceptions.instants.count(instantOf(*reference.file, time)) != 0 ||
           exceptions.days.count(dayOf(time.localTime)) != 0;
}

// Looked at once a search, however many overrides and versions of the main event there are.
const Expander::Overridden& Expander::overridden(const OverrideSet& set) {
    const auto [found, isNew] = m_overridden.try_emplace(&set);
    Overridden& times = found->second;
    if (!isNew) {
        return times;
    }
    for (const EventReference& one : set.all) {
        const EventTime& time = *one.event->recurrenceId;
        const std::int64_t instant = instantOf(*one.file, time);
        const IcsEvent*& newest = times.newest.try_emplace(instant, one.event).first->second;
        if (IcsFile::isNewer(*one.event, *newest)) {
            newest = one.event;
        }
        times.days.insert(dayOf(time.localTime));
        if (time.kind == TimeKind::date) {
            times.dates.insert(dayOf(time.localTime));
        } else if (time.kind == TimeKind::floating) {
            times.floating.insert(time.localTime);
        } else {
            times.instants.insert(instant);
        }
    }
    return times;
}

// EXDATE of the main event.
const Expander::Exceptions& Expander::exceptionsOf(const OverrideSet& set) {
    const auto [found, isNew] = m_exceptions.try_emplace(&set);
    if (isNew) {
        const EventReference& mainEvent = set.mainEvent;
        Series series = seriesOf(*mainEvent.file, *mainEvent.event, false);
        series.from = std::numeric_limits<std::int64_t>::min() / 2;
        series.to = std::numeric_limits<std::int64_t>::max() / 2;
        for (std::uint32_t i = 0; i < mainEvent.event->ruleCount; ++i) {
            const RuleLine& rule = mainEvent.file->ics.rules[mainEvent.event->firstRule + i];
            if (rule.kind == RuleKind::exdate) {
                excludeDates(series, rule);
            }
        }
        found->second = std::move(series.exceptions);
    }
    return found->second;
}

Expander::Length Expander::lengthOf(LoadedFile& file, const IcsEvent& event) {
    const EventTime& start = event.start;
    Length length;
    if (start.kind == TimeKind::date) {
        if (event.end) {
            // A date that ends the event is not part of it, and neither is the day of a midnight.
            length.days = dayOf(event.end->localTime - 1) + 1 - dayOf(start.localTime);
        } else if (event.duration) {
            length.days = event.duration->days +
                          (event.duration->seconds + secondsPerDay - 1) / secondsPerDay;
        }
        length.days = std::clamp<std::int64_t>(length.days, 1, mostDays);
        return length;
    }
    if (event.end) {
        EventTime end = *event.end;
        const bool isIncomplete = end.kind == TimeKind::date || end.kind == TimeKind::floating;
        if (isIncomplete) { // many leave the zone out that the start has
            end.kind = start.kind;
            end.zone = start.zone;
        }
        length.seconds = std::max<std::int64_t>(instantOf(file, end) - instantOf(file, start), 0);
    } else if (event.duration &&
               event.duration->days * secondsPerDay + event.duration->seconds > 0) {
        length.days = std::min(event.duration->days, mostDays);
        length.seconds = event.duration->seconds;
    }
    return length;
}

std::int64_t Expander::endOf(LoadedFile& file, const EventTime& start, std::int64_t startInstant,
                             const Length& length) {
    if (start.kind == TimeKind::date) {
        return m_userZone.latestInstant(
            moved(start, length.days * secondsPerDay - 1).localTime); // 23:59:59 of its last day
    }
    if (length.days == 0) {
        return startInstant + length.seconds;
    }
    const EventTime end = moved(start, length.days * secondsPerDay);
    return std::max(clockOf(file, end).earliestInstant(end.localTime) + length.seconds,
                    startInstant);
}

void Expander::emit(LoadedFile& file, const IcsEvent& event, const EventTime& start,
                    const Length& length, std::optional<std::int64_t> recurrence,
                    std::vector<Occurrence>& result) {
    Occurrence one;
    one.file = &file;
    one.event = &event;
    one.start = instantOf(file, start);
    one.end = endOf(file, start, one.start, length);
    one.isAllDay = start.kind == TimeKind::date;
    one.recurrence = recurrence;
    if (!belongsTo(m_window, one.start, one.end)) {
        return;
    }
    if (m_cost.calendar.found < m_cost.mostFound()) {
        ++m_cost.calendar.found;
        result.push_back(one);
    } else {
        m_cost.calendar.isTruncated = true;
        m_report(file, event.line, "there are too many events: from this one on they are left out");
    }
}

// ---- series

namespace {

// The local time at the instant, moved to the past (-1) or the future (1) by what the clock changes
// around it and a little more: dense rules would spend themselves in a wide margin.
std::int64_t localTimeNear(const ZoneClock& clock, std::int64_t instant, int direction) {
    const auto offsetAt = [&clock](std::int64_t at) { return clock.localTime(at) - at; };
    const std::int64_t change =
        std::abs(offsetAt(instant - marginSeconds) - offsetAt(instant + marginSeconds));
    constexpr std::int64_t little = 60;
    return instant + offsetAt(instant) + direction * (change + little);
}

} // namespace

Expander::Series Expander::seriesOf(LoadedFile& file, const IcsEvent& event, bool mayShift) {
    ZoneClock& clock = clockOf(file, event.start);
    Series series{file, event, clock, lengthOf(file, event), {}, {}, {}, {}, {}, {}, {}};
    const std::int64_t shift = mayShift ? longestShift + marginSeconds : 0;
    const std::int64_t reach = series.length.days * secondsPerDay + series.length.seconds;
    const LocalWindow& localTimes = localWindow(clock);
    series.from = localTimes.from - reach - shift;
    series.to = localTimes.to + shift;
    return series;
}

const Expander::LocalWindow& Expander::localWindow(const ZoneClock& clock) {
    const auto [found, isNew] = m_localWindows.try_emplace(&clock);
    if (isNew) {
        found->second = {localTimeNear(clock, bounded(m_window.from), -1),
                         localTimeNear(clock, bounded(m_window.to), 1)};
    }
    return found->second;
}

void Expander::expandSeries(LoadedFile& file, const IcsEvent& event, const OverrideSet* overrides,
                            std::vector<Occurrence>& result) {
    Series series = seriesOf(file, event, overrides != nullptr && !overrides->future.empty());
    const auto rules = file.ics.rules.cbegin() + event.firstRule;
    const auto ruleCount = std::count_if(rules, rules + event.ruleCount, [](const RuleLine& rule) {
        return rule.kind == RuleKind::rrule;
    });
    series.hasOneRule = ruleCount == 1;
    for (std::uint32_t i = 0; i < event.ruleCount; ++i) {
        const RuleLine& rule = file.ics.rules[event.firstRule + i];
        switch (rule.kind) {
        case RuleKind::rrule:
            for (const std::int64_t localTime : ruleStarts(series, rule)) {
                EventTime time = event.start;
                time.localTime = localTime;
                addStart(series, time, std::nullopt);
            }
            break;
        case RuleKind::rdate:
            addDates(series, rule);
            break;
        case RuleKind::exdate:
            excludeDates(series, rule);
            break;
        case RuleKind::exrule:
            excludeRule(series, rule);
            break;
        }
    }
    if (ruleCount == 0 || series.reachesStart) {
        addStart(series, event.start, std::nullopt);
    } else {
        m_report(file, event.line, "its rules end before it starts; its start is left out");
    }
    if (overrides != nullptr) {
        addFutureOverrides(series, *overrides);
    }
    emitSeries(series, overrides, result);
}

void Expander::emitSeries(Series& series, const OverrideSet* overrides,
                          std::vector<Occurrence>& result) {
    auto& starts = series.starts;
    // A period's own length goes before that of the event.
    std::stable_sort(starts.begin(), starts.end(), [](const Start& a, const Start& b) {
        return std::pair(a.instant, !a.length) < std::pair(b.instant, !b.length);
    });
    const Start* last = nullptr;
    for (const Start& start : starts) {
        if (m_cost.calendar.repeats >= m_cost.mostRepeats()) {
            m_cost.calendar.isTruncated = true;
            m_report(series.file, series.event.line,
                     "there are too many repeats; this event's are not all shown");
            return;
        }
        const bool repeated = last != nullptr && last->instant == start.instant;
        last = &start;
        if (repeated || series.exceptions.instants.count(start.instant) != 0 ||
            series.exceptions.days.count(dayOf(start.time.localTime)) != 0 ||
            (overrides != nullptr && isOverridden(series, start, *overrides))) {
            continue;
        }
        const bool isOne = series.event.repeats || overrides != nullptr;
        const auto recurrence = isOne ? std::optional(start.instant) : std::nullopt;
        const auto following = std::lower_bound(
            series.futureOverrides.begin(), series.futureOverrides.end(), start.instant,
            [](const FutureOverride& one, std::int64_t instant) { return one.instant < instant; });
        const std::size_t foundBefore = m_cost.calendar.found;
        if (following == series.futureOverrides.begin()) {
            emit(series.file, series.event, start.time, start.length.value_or(series.length),
                 recurrence, result);
        } else if (const FutureOverride& from = *std::prev(following);
                   !from.reference.event->cancelled) {
            LoadedFile& file = *from.reference.file;
            const IcsEvent& event = *from.reference.event;
            emit(file, event, movedStart(series, start, from), lengthOf(file, event), recurrence,
                 result);
        }
        m_cost.calendar.repeats += m_cost.calendar.found - foundBefore;
    }
}

bool Expander::isOverridden(Series& series, const Start& start, const OverrideSet& overrides) {
    const Overridden& times = overridden(overrides);
    const std::int64_t day = dayOf(start.time.localTime);
    if (series.event.start.kind == TimeKind::date) {
        return times.days.count(day) != 0;
    }
    const auto isFloating = [&](std::int64_t localTime) { // for the series' clock
        return times.floating.count(localTime) != 0 &&
               series.clock.earliestInstant(localTime) == start.instant;
    };
    return times.dates.count(day) != 0 || times.instants.count(start.instant) != 0 ||
           (!times.floating.empty() && (isFloating(start.time.localTime) ||
                                        isFloating(series.clock.localTime(start.instant))));
}

void Expander::addStart(Series& series, const EventTime& time, std::optional<Length> length) {
    series.starts.push_back({time, instantOf(series.file, time), length});
}

std::vector<std::int64_t> Expander::ruleStarts(Series& series, const RuleLine& line) {
    const IcsEvent& event = series.event;
    ZoneClock& clock = clockOf(series.file, event.start);
    const std::string_view text = series.file.ics.slice(line.value);
    const auto report = [&](const std::string& problem) {
        m_report(series.file, line.line,
                 "a recurrence rule is not followed to its end: " + problem);
    };
    auto [rule, problem] = parseRecurrenceRule(text);
    const auto until = untilOf(text);
    const bool isGiving = line.kind == RuleKind::rrule;
    if (!rule || (rule->hasUntil && !until)) {
        report(rule ? "its UNTIL cannot be used" : problem);
        series.reachesStart = series.reachesStart || isGiving;
        return {};
    }
    RecurrenceRequest request(*rule);
    request.start = event.start.localTime;
    request.wholeDays = event.start.kind == TimeKind::date;
    request.startCounts = isGiving && series.hasOneRule;
    request.from = series.from;
    request.to = series.to;
    const RuleEnd ruleEnd(until, request.wholeDays, clock);
    request.until = ruleEnd.lastLocalTime();
    if (isGiving && ruleEnd.admits(request.start)) {
        series.reachesStart = true;
    }
    if (!request.wholeDays) {
        request.existingLocalTime = [&clock](std::int64_t localTime) {
            return clock.existingLocalTime(localTime);
        };
    }
    request.budget = m_cost.hasSpentSteps() ? fewSteps : standardBudget;
    if (rule->count && request.to >= request.start) {
        const CountEnd end = countEnd(series, line, request);
        if (!end.isCounted && request.to > end.lastLocalTime) {
            report("its COUNT is out of reach");
        }
        request.until = end.lastLocalTime;
        rule->count = std::nullopt;
    }
    RecurrenceStarts starts = expandRecurrence(request);
    m_cost.calendar.steps += starts.stepsSpent;
    ruleEnd.cut(starts.localTimes);
    if (!starts.problem.empty()) {
        report(starts.problem);
    }
    return starts.localTimes;
}

CountEnd Expander::countEnd(Series& series, const RuleLine& line,
                            const RecurrenceRequest& request) {
    const std::string& zone = clockOf(series.file, series.event.start).zone().identifier();
    const auto rule = static_cast<std::size_t>(&line - series.file.ics.rules.data());
    auto& countedRules = series.file.cache.countedRules;
    const auto known = countedRules.find(rule);
    if (known != countedRules.end() && known->second.zone == zone) {
        return known->second.end;
    }
    const CountEnd end = endOfCount(request);
    m_cost.calendar.steps += end.stepsSpent;
    if (end.isCounted || request.budget == standardBudget) {
        countedRules[rule] = {zone, end};
    }
    return end;
}

void Expander::excludeRule(Series& series, const RuleLine& rule) {
    for (const std::int64_t localTime : ruleStarts(series, rule)) {
        EventTime time = series.event.start;
        time.localTime = localTime;
        exclude(series, series.file, time);
    }
}

} // namespace quorvel::icalendar
