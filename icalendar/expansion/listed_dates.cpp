// The dates that RDATE and EXDATE list (RFC 5545 3.8.5.1, 3.8.5.2).
#include <algorithm>
#include <string>

#include "icalendar/expansion/bounds.h"
#include "icalendar/expansion/occurrences.h"
#include "icalendar/text/content_lines.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {

namespace {

constexpr std::int64_t mostDays = 4000000;
constexpr std::size_t mostListedTimes = 100000;

} // namespace

EventTime Expander::listedTime(Series& series, const RuleLine& rule, const TimeValue& value) {
    EventTime time = series.event.start; // without a zone of its own the event's
    time.localTime = civilSeconds(value.civil);
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
        const auto value = parsePeriodOrTime(part);
        if (!value) {
            m_report(series.file, rule.line, "a date of RDATE cannot be read and is left out");
            continue;
        }
        EventTime time = listedTime(series, rule, value->start);
        std::optional<Length> length;
        if (like.kind == TimeKind::date) {
            time = like;
            time.localTime = civilDays(value->start.civil) * secondsPerDay;
        } else if (time.kind == TimeKind::date) { // that day, at the event's time
            time = like;
            time.localTime = civilDays(value->start.civil) * secondsPerDay + like.localTime -
                             dayOf(like.localTime) * secondsPerDay;
        } else if (value->end) {
            const EventTime end = listedTime(series, rule, *value->end);
            length = Length{0, std::max<std::int64_t>(
                                   instantOf(series.file, end) - instantOf(series.file, time), 0)};
        } else if (value->duration) {
            length = Length{std::clamp<std::int64_t>(value->duration->days, 0, mostDays),
                            std::max<std::int64_t>(value->duration->seconds, 0)};
        }
        const std::int64_t localTime = time.localTime;
        const bool mayMeet =
            length || (localTime >= from - marginSeconds && localTime <= to + marginSeconds);
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
        const auto value = parseTime(part);
        if (!value) {
            if (!trimmed(part).empty()) {
                m_report(series.file, rule.line, "a date of EXDATE cannot be read and is left out");
            }
            continue;
        }
        const std::int64_t localTime = civilSeconds(value->civil);
        if (localTime >= from && localTime <= to) {
            exclude(series, series.file, listedTime(series, rule, *value));
        }
    }
}

void Expander::exclude(Series& series, LoadedFile& file, EventTime time) {
    if (time.kind == TimeKind::date || series.event.start.kind == TimeKind::date) {
        series.exceptions.days.insert(dayOf(time.localTime));
    } else {
        series.exceptions.instants.insert(instantOf(file, time));
    }
}

} // namespace quorvel::icalendar
