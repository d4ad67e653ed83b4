#include "icalendar/expansion/event_clocks.h"

#include <string>
#include <utility>
#include <vector>

#include "icalendar/expansion/defined_time_zone.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {

namespace {

// The definition in the name's own VCALENDAR, else one in another VCALENDAR of the file. Null: none
// can be used.
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

} // namespace

EventClocks::EventClocks(ZoneClock& userZone, ZoneNames& names,
                         const ExpansionProblemHandler& onProblem)
    : m_userZone(userZone)
    , m_names(names)
    , m_utc(std::make_shared<ZoneClock>(names.directory().named("UTC")))
    , m_onProblem(onProblem) {}

std::shared_ptr<ZoneClock> EventClocks::findZone(LoadedFile& file, const ZoneName& name,
                                                 std::size_t line) {
    const bool isExact = m_names.directory().isExactName(name.name);
    if (auto zone = isExact ? nullptr : definedZone(file.ics.zones, name)) {
        return std::make_shared<ZoneClock>(std::move(zone));
    }
    if (auto known = m_names.named(name.name)) {
        return known;
    }
    const auto shownName =
        TranslatableText::verbatim('"' + validUtf8(name.name.substr(0, 60)) + '"');
    if (auto zone = m_names.directory().ofStatedOffset(name.name)) {
        m_onProblem(file, line,
                    {translatable("the time zone {1} is known by its offset alone; it is taken to "
                                  "have no summer time"),
                     {shownName}});
        return std::make_shared<ZoneClock>(std::move(zone));
    }
    m_onProblem(file, line,
                {translatable("the time zone {1} is unknown; its times are taken for local ones"),
                 {shownName}});
    return nullptr;
}

ZoneClock& EventClocks::clockOf(LoadedFile& file, const EventTime& time) {
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
        cache.isZoneLookedUp.resize(count);
    }
    if (!cache.isZoneLookedUp[time.zone]) {
        cache.isZoneLookedUp[time.zone] = true;
        cache.zones[time.zone] = findZone(file, zoneName(file, time.zone), 0);
    }
    const auto& zone = cache.zones[time.zone];
    return zone ? *zone : m_userZone;
}

ZoneClock& EventClocks::floatingClock(LoadedFile& file, std::uint32_t calendar) {
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

std::int64_t EventClocks::instantOf(LoadedFile& file, const EventTime& time) {
    if (time.kind == TimeKind::date) {
        return m_userZone.latestInstant(time.localTime);
    }
    return clockOf(file, time).earliestInstant(time.localTime);
}

} // namespace quorvel::icalendar
