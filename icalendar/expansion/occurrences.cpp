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
#include "icalendar/expansion/defined_time_zone.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {
namespace {

// No reading lies further from its instant, in any zone.
constexpr std::int64_t marginSeconds = 2 * secondsPerDay;
constexpr std::int64_t mostDays = 4000000;
constexpr std::int64_t longestShift = 400 * secondsPerDay;
constexpr std::size_t mostFutureOverrides = 100;
constexpr std::size_t mostListedTimes = 100000;
// The steps of all rules of a search until each gets few only.
constexpr std::int64_t mostSteps = 4'000'000;
constexpr std::int64_t fewSteps = 2'000;
// Of all calendars of a search; each takes a kilobyte in the end.
constexpr std::size_t mostFoundOfAll = 100'000;
constexpr std::size_t leastShare = 1'000; // of a calendar, whatever the others found

std::int64_t bounded(double seconds) {
    constexpr double farthest = 2.54e11; // the year 9999 and a little more
    return static_cast<std::int64_t>(std::clamp(std::floor(seconds), -farthest, farthest));
}

EventTime moved(EventTime time, std::int64_t seconds) {
    time.reading += seconds;
    return time;
}

std::int64_t overriddenReading(const EventReference& reference) {
    return reference.event->recurrenceId->reading;
}

const ZoneName& zoneName(const LoadedFile& file, std::size_t index) {
    const auto& names = file.ics.zoneNames;
    return index < names.size() ? names[index] : file.cache.listedZones[index - names.size()];
}

// The counterpart. A name that no parsed time bears is added to the cache.
std::uint32_t zoneIndex(LoadedFile& file, const ZoneName& name) {
    const auto& parsed = file.ics.zoneNames;
    const auto known = std::find(parsed.begin(), parsed.end(), name);
    if (known != parsed.end()) {
        return static_cast<std::uint32_t>(known - parsed.begin());
    }
    auto& listed = file.cache.listedZones;
    const auto found = std::find(listed.begin(), listed.end(), name);
    const auto index = static_cast<std::size_t>(found - listed.begin());
    if (found == listed.end()) {
        listed.push_back(name);
    }
    return static_cast<std::uint32_t>(parsed.size() + index);
}

// Of its own calendar, else of another one in the file.
std::shared_ptr<const TimeZone> definedZone(const std::vector<ZoneDefinition>& definitions,
                                            const ZoneName& name) {
    std::shared_ptr<const TimeZone> elsewhere;
    for (const ZoneDefinition& definition : definitions) {
        if (definition.name.name != name.name) {
            continue;
        }
        const bool isOwn = definition.name.calendar == name.calendar;
        if (isOwn || !elsewhere) {
            auto zone = makeDefinedTimeZone(definition);
            if (zone && isOwn) {
                return zone;
            }
            elsewhere = zone ? zone : elsewhere;
        }
    }
    return elsewhere;
}

using Files = std::vector<std::shared_ptr<LoadedFile>>;

// In the files' order, by the number of each among all events.
template <typename Use>
void forEachEvent(const Files& files, Use use) {
    std::uint32_t number = 0;
    for (std::uint32_t fileNumber = 0; fileNumber < files.size(); ++fileNumber) {
        LoadedFile& file = *files[fileNumber];
        for (std::uint32_t event = 0; event < file.ics.events.size(); ++event) {
            use(number++, EventReference{&file, &file.ics.events[event]},
                EventEntry{file.ics.events[event].firstDay, file.ics.events[event].lastDay,
                           fileNumber, event});
        }
    }
}

// Which of the main events, by their numbers, share a UID with another, or may do so: by the UIDs'
// hashes, as nearly all have one of their own.
std::vector<bool> findContested(const Files& files, std::size_t count) {
    struct Key {
        std::size_t hash;
        std::uint32_t number;
    };
    std::vector<Key> keys;
    keys.reserve(count);
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        if (!one.event->recurrenceId) {
            const std::string_view uid = one.file->ics.slice(one.event->uid);
            keys.push_back({std::hash<std::string_view>()(uid), number});
        }
    });
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.hash < b.hash; });
    std::vector<bool> isContested(count);
    for (std::size_t i = 1; i < keys.size(); ++i) {
        if (keys[i].hash == keys[i - 1].hash) {
            isContested[keys[i].number] = isContested[keys[i - 1].number] = true;
        }
    }
    return isContested;
}

// Of the main events with one UID the newest version first, and of those that begin alike the last
// one in the files.
struct Version {
    std::string_view uid;
    const IcsEvent* event = nullptr;
    std::uint32_t number = 0; // among all events

    bool operator<(const Version& other) const {
        if (uid != other.uid) {
            return uid < other.uid;
        }
        if (IcsFile::isNewer(*event, *other.event) || IcsFile::isNewer(*other.event, *event)) {
            return IcsFile::isNewer(*event, *other.event);
        }
        return std::tuple(event->start.reading, event->start.kind, other.number) <
               std::tuple(other.event->start.reading, other.event->start.kind, number);
    }
    bool beginsLike(const Version& other) const {
        return event->start.reading == other.event->start.reading &&
               event->start.kind == other.event->start.kind;
    }
};

// Which of the events, by their numbers, give way to another version of themselves.
std::vector<bool> findSuperseded(const Files& files, std::size_t count) {
    const std::vector<bool> isContested = findContested(files, count);
    std::vector<Version> versions;
    versions.reserve(
        static_cast<std::size_t>(std::count(isContested.begin(), isContested.end(), true)));
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        if (isContested[number]) {
            versions.push_back({one.file->ics.slice(one.event->uid), one.event, number});
        }
    });
    std::sort(versions.begin(), versions.end());
    std::vector<bool> isSuperseded(count);
    const Version* newest = nullptr; // of the same UID
    const Version* before = nullptr;
    for (const Version& one : versions) {
        if (newest == nullptr || newest->uid != one.uid) {
            newest = &one;
        } else {
            isSuperseded[one.number] =
                IcsFile::isNewer(*newest->event, *one.event) || before->beginsLike(one);
        }
        before = &one;
    }
    return isSuperseded;
}

bool overrideTheSame(const EventReference& a, const EventReference& b) {
    const EventTime& first = *a.event->recurrenceId;
    const EventTime& second = *b.event->recurrenceId;
    const auto zoneOf = [](const EventReference& one, const EventTime& time) {
        return time.kind == TimeKind::zoned
                   ? std::string_view(one.file->ics.zoneNames[time.zone].name)
                   : std::string_view();
    };
    return first.reading == second.reading && first.kind == second.kind &&
           zoneOf(a, first) == zoneOf(b, second);
}

void sortOverrides(OverrideSet& set) {
    std::reverse(set.all.begin(), set.all.end()); // of equals the last one is the newest
    std::stable_sort(
        set.all.begin(), set.all.end(), [](const EventReference& a, const EventReference& b) {
            const std::int64_t first = overriddenReading(a);
            const std::int64_t second = overriddenReading(b);
            return first != second ? first < second : IcsFile::isNewer(*a.event, *b.event);
        });
    for (const EventReference& one : set.all) {
        const bool isWanted = one.event->thisAndFuture &&
                              (set.future.empty() || !overrideTheSame(set.future.back(), one));
        if (isWanted && set.future.size() < mostFutureOverrides) {
            set.future.push_back(one);
        } else if (isWanted) {
            set.hasMoreFuture = true;
        }
    }
}

} // namespace

bool belongsTo(const Window& window, std::int64_t start, std::int64_t end) {
    const auto first = static_cast<double>(start);
    const auto last = static_cast<double>(end);
    return (last > window.from || first == window.from) && first <= window.to;
}

namespace {

// The overrides get to know the whole event. What follows one of them may move with it out of the
// event's days.
void followMaster(const EventReference& master, Overrides& overrides, EventEntry& entry) {
    const auto set = overrides.find(master.file->ics.slice(master.event->uid));
    if (set == overrides.end()) {
        return;
    }
    set->second.master = master;
    if (!set->second.future.empty()) {
        constexpr std::int32_t days = longestShift / secondsPerDay;
        constexpr auto farthest = std::numeric_limits<std::int32_t>::max();
        entry.firstDay = std::max(entry.firstDay, days - farthest) - days;
        entry.lastDay = std::min(entry.lastDay, farthest - days) + days;
    }
}

} // namespace

EventSet collectEvents(const std::vector<std::shared_ptr<LoadedFile>>& files) {
    std::size_t count = 0;
    for (const auto& file : files) {
        count += file->ics.events.size();
    }
    EventSet result;
    const std::vector<bool> isSuperseded = findSuperseded(files, count);
    forEachEvent(files, [&](std::uint32_t, const EventReference& one, const EventEntry&) {
        if (one.event->recurrenceId) {
            result.overrides[one.file->ics.slice(one.event->uid)].all.push_back(one);
        }
    });
    for (auto& [uid, set] : result.overrides) {
        sortOverrides(set);
    }
    result.entries.reserve(count);
    forEachEvent(files,
                 [&](std::uint32_t number, const EventReference& one, const EventEntry& entry) {
                     if (isSuperseded[number]) {
                         return;
                     }
                     result.entries.push_back(entry);
                     if (!one.event->recurrenceId && !result.overrides.empty()) {
                         followMaster(one, result.overrides, result.entries.back());
                     }
                 });
    return result;
}

void SearchCost::endCalendar() {
    before.steps += calendar.steps;
    before.found += calendar.found;
    calendar = {};
}

std::size_t SearchCost::mostFound() const {
    return std::max(leastShare, (mostFoundOfAll - std::min(mostFoundOfAll, before.found)) / 2);
}

// The rest of the share is for events that do not repeat: one hostile rule must not crowd them out.
std::size_t SearchCost::mostRepeats() const {
    return mostFound() / 4 * 3;
}

bool SearchCost::hasSpentSteps() const {
    return before.steps + calendar.steps >= mostSteps;
}

bool SearchCost::allows(const CalendarCost& known) const {
    return !known.isCut && known.found <= mostFound() && known.repeats < mostRepeats();
}

Expander::Expander(Window window, ZoneClock& userZone, ZoneNames& names,
                   const ReportExpansion& report, SearchCost& cost)
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
    const EventReference& master = set.master;
    if (master.event == nullptr) {
        return false;
    }
    if (master.event->cancelled) {
        return reference.event->sequence <= master.event->sequence;
    }
    if (reference.event->sequence >= master.event->sequence) {
        return false;
    }
    const EventTime& time = *reference.event->recurrenceId;
    const Exceptions& exceptions = exceptionsOf(set);
    return exceptions.instants.count(instantOf(*reference.file, time)) != 0 ||
           exceptions.days.count(dayOf(time.reading)) != 0;
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
        times.days.insert(dayOf(time.reading));
        if (time.kind == TimeKind::date) {
            times.dates.insert(dayOf(time.reading));
        } else if (time.kind == TimeKind::floating) {
            times.floating.insert(time.reading);
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
        const EventReference& master = set.master;
        Series series = seriesOf(*master.file, *master.event, false);
        series.from = std::numeric_limits<std::int64_t>::min() / 2;
        series.to = std::numeric_limits<std::int64_t>::max() / 2;
        for (std::uint32_t i = 0; i < master.event->ruleCount; ++i) {
            const RuleLine& rule = master.file->ics.rules[master.event->firstRule + i];
            if (rule.kind == RuleKind::exdate) {
                excludeDates(series, rule);
            }
        }
        found->second = std::move(series.exceptions);
    }
    return found->second;
}

// ---- times and zones

std::shared_ptr<ZoneClock> Expander::findZone(LoadedFile& file, const ZoneName& name,
                                              std::size_t line) {
    const bool isExact = m_names.directory().isExactName(name.name);
    if (auto zone = isExact ? nullptr : definedZone(file.ics.zones, name)) {
        return std::make_shared<ZoneClock>(std::move(zone));
    }
    if (auto known = m_names.named(name.name)) {
        return known;
    }
    const std::string shown = "the time zone \"" + validUtf8(name.name.substr(0, 60)) + "\" is ";
    if (auto zone = m_names.directory().ofStatedOffset(name.name)) {
        m_report(file, line,
                 shown + "known by its offset alone; it is taken to have no summer time");
        return std::make_shared<ZoneClock>(std::move(zone));
    }
    m_report(file, line, shown + "unknown; its times are taken for local ones");
    return nullptr;
}

ZoneClock& Expander::clockOf(LoadedFile& file, const EventTime& time) {
    if (time.kind == TimeKind::utc) {
        return *m_utc;
    }
    if (time.kind == TimeKind::floating) {
        return floatingClock(file, time.zone);
    }
    if (time.kind != TimeKind::zoned) {
        return m_userZone;
    }
    ExpansionCache& cache = file.cache;
    if (cache.zones.size() <= time.zone) {
        const std::size_t count = file.ics.zoneNames.size() + cache.listedZones.size();
        cache.zones.resize(count);
        cache.zonesAsked.resize(count);
    }
    if (!cache.zonesAsked[time.zone]) {
        cache.zonesAsked[time.zone] = true;
        cache.zones[time.zone] = findZone(file, zoneName(file, time.zone), 0);
    }
    const auto& zone = cache.zones[time.zone];
    return zone ? *zone : m_userZone;
}

ZoneClock& Expander::floatingClock(LoadedFile& file, std::uint32_t calendar) {
    if (file.ics.floatingZones.empty()) {
        return m_userZone;
    }
    const auto [found, isNew] = file.cache.floatingZones.try_emplace(calendar);
    const FloatingZone* const zone = isNew ? file.ics.floatingZoneOf(calendar) : nullptr;
    if (zone != nullptr) {
        found->second = findZone(file, zone->name, zone->line);
    }
    return found->second ? *found->second : m_userZone;
}

std::int64_t Expander::instantOf(LoadedFile& file, const EventTime& time) {
    if (time.kind == TimeKind::date) {
        return m_userZone.platformInstant(time.reading);
    }
    return clockOf(file, time).instant(time.reading);
}

Expander::Length Expander::lengthOf(LoadedFile& file, const IcsEvent& event) {
    const EventTime& start = event.start;
    Length length;
    if (start.kind == TimeKind::date) {
        if (event.end) {
            // A date that ends the event is not part of it, and neither is the day of a midnight.
            length.days = dayOf(event.end->reading - 1) + 1 - dayOf(start.reading);
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
        return m_userZone.platformInstant(
            moved(start, length.days * secondsPerDay - 1).reading); // 23:59:59 of its last day
    }
    if (length.days == 0) {
        return startInstant + length.seconds;
    }
    const EventTime end = moved(start, length.days * secondsPerDay);
    return std::max(clockOf(file, end).instant(end.reading) + length.seconds, startInstant);
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
        m_cost.calendar.isCut = true;
        m_report(file, event.line, "there are too many events: from this one on they are left out");
    }
}

// ---- series

namespace {

// The clock's reading, moved to the past (-1) or the future (1) by what the clock changes around it
// and a little more: dense rules would spend themselves in a wide margin.
std::int64_t readingNear(const ZoneClock& clock, std::int64_t instant, int direction) {
    const auto offsetAt = [&clock](std::int64_t at) { return clock.reading(at) - at; };
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
    const Readings& readings = readingsOfWindow(clock);
    series.from = readings.from - reach - shift;
    series.to = readings.to + shift;
    return series;
}

const Expander::Readings& Expander::readingsOfWindow(const ZoneClock& clock) {
    const auto [found, isNew] = m_readings.try_emplace(&clock);
    if (isNew) {
        found->second = {readingNear(clock, bounded(m_window.from), -1),
                         readingNear(clock, bounded(m_window.to), 1)};
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
            for (const std::int64_t reading : ruleStarts(series, rule)) {
                EventTime time = event.start;
                time.reading = reading;
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
            m_cost.calendar.isCut = true;
            m_report(series.file, series.event.line,
                     "there are too many repeats; this event's are not all shown");
            return;
        }
        const bool repeated = last != nullptr && last->instant == start.instant;
        last = &start;
        if (repeated || series.exceptions.instants.count(start.instant) != 0 ||
            series.exceptions.days.count(dayOf(start.time.reading)) != 0 ||
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
    const std::int64_t day = dayOf(start.time.reading);
    if (series.event.start.kind == TimeKind::date) {
        return times.days.count(day) != 0;
    }
    const auto isFloating = [&](std::int64_t localTime) { // for the series' clock
        return times.floating.count(localTime) != 0 &&
               series.clock.instant(localTime) == start.instant;
    };
    return times.dates.count(day) != 0 || times.instants.count(start.instant) != 0 ||
           (!times.floating.empty() &&
            (isFloating(start.time.reading) || isFloating(series.clock.reading(start.instant))));
}

void Expander::addStart(Series& series, const EventTime& time, std::optional<Length> length) {
    series.starts.push_back({time, instantOf(series.file, time), length});
}

namespace {

// What UNTIL, which may be absent, means for the local times of a rule: the last of them, and where
// it is in UTC the last instant. Around a change of the clock the two orders differ.
class RuleEnd {
public:
    RuleEnd(const std::optional<TimeValue>& until, bool wholeDays, ZoneClock& clock)
        : m_clock(clock) {
        if (!until) {
            return;
        }
        m_lastLocalTime = civilSeconds(until->civil);
        if (until->isDate) { // the whole of that day
            m_lastLocalTime = (civilDays(until->civil) + 1) * secondsPerDay - 1;
        }
        if (until->isUtc && !wholeDays) {
            m_lastInstant = m_lastLocalTime;
            m_lastLocalTime = clock.reading(*m_lastInstant) + marginSeconds;
        }
    }
    const std::optional<std::int64_t>& lastLocalTime() const { return m_lastLocalTime; }
    bool admits(std::int64_t localTime) const {
        return (!m_lastLocalTime || localTime <= *m_lastLocalTime) &&
               (!m_lastInstant || m_clock.instant(localTime) <= *m_lastInstant);
    }
    // Of sorted ones.
    void cut(std::vector<std::int64_t>& localTimes) const {
        if (!m_lastLocalTime) {
            return;
        }
        const auto doubtful = std::lower_bound(localTimes.begin(), localTimes.end(),
                                               *m_lastLocalTime - 2 * marginSeconds);
        localTimes.erase(std::remove_if(doubtful, localTimes.end(),
                                        [this](std::int64_t one) { return !admits(one); }),
                         localTimes.end());
    }

private:
    ZoneClock& m_clock;
    std::optional<std::int64_t> m_lastLocalTime;
    std::optional<std::int64_t> m_lastInstant;
};

} // namespace

std::vector<std::int64_t> Expander::ruleStarts(Series& series, const RuleLine& line) {
    const IcsEvent& event = series.event;
    ZoneClock& clock = clockOf(series.file, event.start);
    const std::string_view text = series.file.ics.slice(line.value);
    const auto report = [&](const std::string& problem) {
        m_report(series.file, line.line,
                 "a recurrence rule is not followed to its end: " + problem);
    };
    auto [rule, problem] = readRecurrenceRule(text);
    const auto until = untilOf(text);
    const bool isGiving = line.kind == RuleKind::rrule;
    if (!rule || (rule->hasUntil && !until)) {
        report(rule ? "its UNTIL cannot be used" : problem);
        series.reachesStart = series.reachesStart || isGiving;
        return {};
    }
    RecurrenceRequest request(*rule);
    request.start = event.start.reading;
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
        request.shown = [&clock](std::int64_t reading) { return clock.shown(reading); };
    }
    request.budget = m_cost.hasSpentSteps() ? fewSteps : standardBudget;
    if (rule->count && request.to >= request.start) {
        const CountEnd end = countEnd(series, line, request);
        if (!end.isCounted && request.to > end.reading) {
            report("its COUNT is out of reach");
        }
        request.until = end.reading;
        rule->count = std::nullopt;
    }
    RecurrenceStarts starts = expandRecurrence(request);
    m_cost.calendar.steps += starts.stepsSpent;
    ruleEnd.cut(starts.readings);
    if (!starts.problem.empty()) {
        report(starts.problem);
    }
    return starts.readings;
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

EventTime Expander::listedTime(Series& series, const RuleLine& rule, const TimeValue& value) {
    EventTime time = series.event.start; // without a zone of its own the event's
    time.reading = civilSeconds(value.civil);
    if (value.isDate) {
        time.kind = TimeKind::date;
    } else if (value.isUtc) {
        time.kind = TimeKind::utc;
    } else if (const auto zone = zoneParameter(series.file.ics.slice(rule.parameters))) {
        time.kind = TimeKind::zoned;
        time.zone = zoneIndex(series.file, {std::string(*zone), series.event.calendar});
    } else if (time.kind == TimeKind::date) {
        time.kind = TimeKind::floating;
        time.zone = series.event.calendar;
    }
    return time;
}

void Expander::addDates(Series& series, const RuleLine& rule) {
    const EventTime& like = series.event.start;
    const std::int64_t from = series.from;
    const std::int64_t to = series.to;
    for (const std::string_view part : listParts(series.file.ics.slice(rule.value))) {
        const auto value = readPeriodOrTime(part);
        if (!value) {
            m_report(series.file, rule.line, "a date of RDATE cannot be read and is left out");
            continue;
        }
        EventTime time = listedTime(series, rule, value->start);
        std::optional<Length> length;
        if (like.kind == TimeKind::date) {
            time = like;
            time.reading = civilDays(value->start.civil) * secondsPerDay;
        } else if (time.kind == TimeKind::date) { // that day, at the event's time
            time = like;
            time.reading = civilDays(value->start.civil) * secondsPerDay + like.reading -
                           dayOf(like.reading) * secondsPerDay;
        } else if (value->end) {
            const EventTime end = listedTime(series, rule, *value->end);
            length = Length{0, std::max<std::int64_t>(
                                   instantOf(series.file, end) - instantOf(series.file, time), 0)};
        } else if (value->duration) {
            length = Length{std::clamp<std::int64_t>(value->duration->days, 0, mostDays),
                            std::max<std::int64_t>(value->duration->seconds, 0)};
        }
        const std::int64_t reading = time.reading;
        const bool mayMeet =
            length || (reading >= from - marginSeconds && reading <= to + marginSeconds);
        if (mayMeet && series.starts.size() >= mostListedTimes) {
            m_report(series.file, rule.line,
                     "more than " + std::to_string(mostListedTimes) +
                         " of its dates lie around the time searched; the others are left out");
            return;
        }
        if (mayMeet) {
            addStart(series, time, length);
        }
    }
}

void Expander::excludeDates(Series& series, const RuleLine& rule) {
    const std::int64_t from = series.from - marginSeconds;
    const std::int64_t to = series.to + marginSeconds;
    for (const std::string_view part : listParts(series.file.ics.slice(rule.value))) {
        const auto value = readTime(part);
        if (!value) {
            if (!trimmed(part).empty()) {
                m_report(series.file, rule.line, "a date of EXDATE cannot be read and is left out");
            }
            continue;
        }
        const std::int64_t reading = civilSeconds(value->civil);
        if (reading >= from && reading <= to) {
            exclude(series, series.file, listedTime(series, rule, *value));
        }
    }
}

void Expander::excludeRule(Series& series, const RuleLine& rule) {
    for (const std::int64_t reading : ruleStarts(series, rule)) {
        EventTime time = series.event.start;
        time.reading = reading;
        exclude(series, series.file, time);
    }
}

// A floating one is the series': many leave the zone out that the event has.
EventTime Expander::overriddenTime(const Series& series, const EventReference& reference) {
    EventTime time = *reference.event->recurrenceId;
    if (time.kind == TimeKind::floating) {
        time.kind = series.event.start.kind;
        time.zone = series.event.start.zone;
    }
    return time;
}

void Expander::exclude(Series& series, LoadedFile& file, EventTime time) {
    if (time.kind == TimeKind::date || series.event.start.kind == TimeKind::date) {
        series.exceptions.days.insert(dayOf(time.reading));
    } else {
        series.exceptions.instants.insert(instantOf(file, time));
    }
}

// ---- overrides that hold for what follows as well

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
