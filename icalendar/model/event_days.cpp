#include "icalendar/model/event_days.h"

#include <algorithm>
#include <limits>

#include "base/civil_calendar.h"
#include "base/time_units.h"
#include "icalendar/model/zone_margin.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::int64_t farthestDay = std::numeric_limits<std::int32_t>::max();

struct WideRange {
    std::int64_t first = 0;
    std::int64_t last = 0;
};

// The days behind its first one that a duration reaches into, at any time of the day it begins.
std::int64_t daysReached(const Duration& duration) {
    return std::max<std::int64_t>(duration.days, 0) +
           std::max<std::int64_t>(duration.seconds, 0) / secondsPerDay + 1;
}

std::int64_t lastDayOf(const PeriodValue& period) {
    const std::int64_t day = civilDays(period.start.civil);
    if (period.end) {
        return std::max(day, civilDays(period.end->civil));
    }
    return period.duration ? day + daysReached(*period.duration) : day;
}

void widen(std::string_view value, RuleKind kind, WideRange& range) {
    if (kind == RuleKind::rrule) {
        const auto until = untilOf(value);
        range.last = std::max(range.last, until ? civilDays(until->civil) : farthestDay);
    } else if (kind == RuleKind::rdate) {
        for (const std::string_view part : listParts(value)) {
            if (const auto date = parsePeriodOrTime(part)) {
                range.first = std::min(range.first, civilDays(date->start.civil));
                range.last = std::max(range.last, lastDayOf(*date));
            }
        }
    }
}

// Of one occurrence, at least one.
std::int64_t lengthInDays(const IcsEvent& event) {
    if (event.end) {
        const std::int64_t days = dayOf(event.end->localTime) - dayOf(event.start.localTime);
        return 1 + std::max<std::int64_t>(days, 0);
    }
    return event.duration ? 1 + daysReached(*event.duration) : 1;
}

} // namespace

DayRange daysOf(const IcsFile& file, const IcsEvent& event) {
    const std::int64_t start = dayOf(event.start.localTime);
    WideRange range{start, start};
    for (std::uint32_t i = 0; i < event.ruleCount; ++i) {
        const RuleLine& rule = file.rules[event.firstRule + i];
        widen(file.slice(rule.value), rule.kind, range);
    }
    const std::int64_t first = range.first - zoneMarginDays;
    const std::int64_t last = range.last + lengthInDays(event) + zoneMarginDays;
    return {static_cast<std::int32_t>(std::max(first, -farthestDay)),
            static_cast<std::int32_t>(std::min(last, farthestDay))};
}

} // namespace quorvel::icalendar
