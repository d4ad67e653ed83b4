// The offset of a day is looked up once, unless the clock changes around it.
#include "icalendar/time/zone_clock.h"

#include "base/time_units.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t mostDays = 50000;
constexpr std::size_t mostNames = 5000;
constexpr std::size_t longestName = 256;

} // namespace

ZoneClock::ZoneClock(std::shared_ptr<const TimeZone> zone)
    : m_zone(std::move(zone)) {}

// The same offset well before and well after the day: no zone changes twice within three days.
const std::optional<int>& ZoneClock::steadyOffset(std::int64_t day) {
    const auto known = m_offsets.find(day);
    if (known != m_offsets.end()) {
        return known->second;
    }
    if (m_offsets.size() >= mostDays) {
        m_offsets.clear();
    }
    const int before = m_zone->offsetAt((day - 1) * secondsPerDay);
    const int after = m_zone->offsetAt((day + 2) * secondsPerDay);
    const std::optional<int> offset = before == after ? std::optional(before) : std::nullopt;
    return m_offsets.emplace(day, offset).first->second;
}

std::int64_t ZoneClock::earliestInstant(std::int64_t localTime) {
    if (const auto offset = steadyOffset(dayOf(localTime))) {
        return localTime - *offset;
    }
    const std::int64_t late = m_zone->instant(civilFromSeconds(localTime));
    if (late + m_zone->offsetAt(late) != localTime) {
        return late; // moved out of a gap
    }
    const int earlierOffset = m_zone->offsetAt(late - secondsPerDay);
    const std::int64_t early = localTime - earlierOffset;
    const bool twice = early < late && m_zone->offsetAt(early) == earlierOffset;
    return twice ? early : late;
}

// A day on which the clock changes may be asked for each of its seconds: the change is sought once.
ZoneClock::Gap ZoneClock::gapAround(std::int64_t day) {
    const auto known = m_gaps.find(day);
    if (known != m_gaps.end()) {
        return known->second;
    }
    if (m_gaps.size() >= mostDays) {
        m_gaps.clear();
    }
    std::int64_t before = (day - 1) * secondsPerDay;
    std::int64_t after = (day + 2) * secondsPerDay;
    const int offset = m_zone->offsetAt(before);
    const int newOffset = m_zone->offsetAt(after);
    while (after - before > 1) {
        const std::int64_t middle = before + (after - before) / 2;
        (m_zone->offsetAt(middle) == offset ? before : after) = middle;
    }
    return m_gaps.emplace(day, Gap{after + offset, after + newOffset}).first->second;
}

std::int64_t ZoneClock::existingLocalTime(std::int64_t localTime) {
    const std::int64_t day = dayOf(localTime);
    if (steadyOffset(day)) {
        return localTime;
    }
    const Gap gap = gapAround(day); // ends before it begins where the clock goes back
    const bool isSkipped = localTime >= gap.begin && localTime < gap.end;
    return isSkipped ? localTime + (gap.end - gap.begin) : localTime;
}

std::int64_t ZoneClock::latestInstant(std::int64_t localTime) {
    if (const auto offset = steadyOffset(dayOf(localTime))) {
        return localTime - *offset;
    }
    return m_zone->instant(civilFromSeconds(localTime));
}

std::int64_t ZoneClock::localTime(std::int64_t instant) const {
    return instant + m_zone->offsetAt(instant);
}

ZoneNames::ZoneNames(const ZoneDirectory& directory)
    : m_directory(directory) {}

std::shared_ptr<ZoneClock> ZoneNames::named(std::string_view name) {
    const auto known = m_zones.find(name);
    if (known != m_zones.end()) {
        return known->second;
    }
    if (name.size() > longestName) {
        return nullptr;
    }
    if (m_zones.size() >= mostNames) {
        m_zones.clear();
    }
    auto zone = m_directory.named(name);
    auto clock = zone ? std::make_shared<ZoneClock>(std::move(zone)) : nullptr;
    m_zones.emplace(name, clock);
    return clock;
}

} // namespace quorvel::icalendar
