#include "icalendar/model/event_days.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

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

std::optional<std::int64_t> smallNumber(std::string_view text) {
    constexpr std::int64_t greatest = 10'000; // far from what takes too many steps to follow
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && value >= 1 && value <= greatest ? std::optional(value) : std::nullopt;
}

bool isWeekday(std::string_view text) {
    constexpr std::string_view names[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    return std::find(std::begin(names), std::end(names), text) != std::end(names);
}

// The parts of a rule that has an occurrence in each of its days or weeks.
struct CountedRule {
    std::optional<std::int64_t> unit; // days
    std::optional<std::int64_t> count;
    std::int64_t interval = 1;

    // False where the part is of another kind of rule.
    bool addPart(std::string_view key, std::string_view value) {
        if (key == "FREQ" && !unit) {
            unit = value == "WEEKLY" ? 7 : 1;
            return value == "WEEKLY" || value == "DAILY";
        }
        if (key == "COUNT" && !count) {
            count = smallNumber(value);
            return count.has_value();
        }
        if (key == "INTERVAL") {
            interval = std::max(interval, smallNumber(value).value_or(0));
            return smallNumber(value).has_value();
        }
        if (key == "BYDAY" && unit == 7) {
            const auto days = listParts(value);
            return std::all_of(days.begin(), days.end(), isWeekday);
        }
        return key == "WKST" && isWeekday(value);
    }
};

// The days from its start after which such a rule has certainly counted to its end. The first week
// may lack its weekdays, and a clock that skips days takes some.
std::optional<std::int64_t> daysCounted(std::string_view rule) {
    constexpr std::size_t longestRule = 200;
    if (rule.size() > longestRule) {
        return std::nullopt;
    }
    CountedRule counted;
    while (!rule.empty()) {
        const std::size_t end = rule.find(';');
        const std::string_view part = rule.substr(0, end);
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos ||
            !counted.addPart(part.substr(0, equals), part.substr(equals + 1))) {
            return std::nullopt;
        }
        rule.remove_prefix(end == std::string_view::npos ? rule.size() : end + 1);
    }
    if (!counted.unit || !counted.count) {
        return std::nullopt;
    }
    constexpr std::int64_t surplus = 7;
    return (*counted.count + 1) * counted.interval * *counted.unit + surplus;
}

// Exceptions that can all be read, and need no other zone than the event's.
bool arePlainExceptions(const IcsEvent& event, std::string_view dates) {
    const auto parts = listParts(dates);
    return std::all_of(parts.begin(), parts.end(), [&event](std::string_view part) {
        const auto date = parseTime(part);
        return date && (date->isDate || date->isUtc || event.start.kind == TimeKind::zoned);
    });
}

// One rule of that kind, with exceptions at most; else absent.
std::optional<std::int64_t> daysCounted(const IcsFile& file, const IcsEvent& event) {
    std::optional<std::int64_t> days;
    for (std::uint32_t i = 0; i < event.ruleCount; ++i) {
        const RuleLine& rule = file.rules[event.firstRule + i];
        const std::string_view value = file.slice(rule.value);
        if (rule.kind == RuleKind::rrule && !days) {
            days = daysCounted(value);
            if (!days) {
                return std::nullopt;
            }
        } else if (rule.kind != RuleKind::exdate || !arePlainExceptions(event, value)) {
            return std::nullopt;
        }
    }
    return days;
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

DayRange daysOf(const IcsFile& file, const IcsEvent& event, bool zonesAreKnown) {
    const std::int64_t start = dayOf(event.start.localTime);
    const bool mayBeCounted = zonesAreKnown && event.ruleCount > 0 && !event.recurrenceId;
    const auto counted = mayBeCounted ? daysCounted(file, event) : std::nullopt;
    WideRange range{start, start + counted.value_or(0)};
    for (std::uint32_t i = 0; !counted && i < event.ruleCount; ++i) {
        const RuleLine& rule = file.rules[event.firstRule + i];
        widen(file.slice(rule.value), rule.kind, range);
    }
    const std::int64_t first = range.first - zoneMarginDays;
    const std::int64_t last = range.last + lengthInDays(event) + zoneMarginDays;
    return {static_cast<std::int32_t>(std::max(first, -farthestDay)),
            static_cast<std::int32_t>(std::min(last, farthestDay))};
}

} // namespace quorvel::icalendar
