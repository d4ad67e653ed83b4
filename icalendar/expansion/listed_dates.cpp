#include "icalendar/expansion/listed_dates.h"

#include <algorithm>
#include <string>

#include "icalendar/expansion/bounds.h"
#include "icalendar/text/content_lines.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t mostListedTimes = 100000;

EventTime listedTime(Series& series, const RuleLine& line, const TimeValue& value) {
    EventTime time = series.event.start; // without a zone of its own the event's
    time.localTime = civilSeconds(value.civil);
    if (value.isDate) {
        time.kind = TimeKind::date;
    } else if (value.isUtc) {
        time.kind = TimeKind::utc;
    } else if (const auto zone = zoneParameter(series.file.ics.slice(line.parameters))) {
        time.kind = TimeKind::zoned;
        time.zone = zoneIndex(series.file, {std::string(*zone), series.event.calendar});
    } else if (time.kind == TimeKind::date) {
        time.kind = TimeKind::floating;
        time.zone = series.event.calendar;
    }
    return time;
}

} // namespace

void addListedDates(ExpansionContext& context, Series& series, const RuleLine& line) {
    const EventTime& like = series.event.start;
    const std::int64_t from = series.from;
    const std::int64_t to = series.to;
    for (const std::string_view part : listParts(series.file.ics.slice(line.value))) {
        const auto value = parsePeriodOrTime(part);
        if (!value) {
            context.onProblem(series.file, line.line,
                              translatable("a date of RDATE cannot be read and is left out"));
            continue;
        }
        EventTime time = listedTime(series, line, value->start);
        std::optional<EventLength> length;
        if (like.kind == TimeKind::date) {
            time = like;
            time.localTime = civilDays(value->start.civil) * secondsPerDay;
        } else if (time.kind == TimeKind::date) { // that day, at the event's time
            time = like;
            time.localTime = civilDays(value->start.civil) * secondsPerDay + like.localTime -
                             dayOf(like.localTime) * secondsPerDay;
        } else if (value->end) {
            const EventTime end = listedTime(series, line, *value->end);
            length = EventLength{
                0, std::max<std::int64_t>(context.clocks.instantOf(series.file, end) -
                                              context.clocks.instantOf(series.file, time),
                                          0)};
        } else if (value->duration) {
            length =
                EventLength{std::clamp<std::int64_t>(value->duration->days, 0, mostDaysOfAnEvent),
                            std::max<std::int64_t>(value->duration->seconds, 0)};
        }
        const std::int64_t localTime = time.localTime;
        const bool mayMeet =
            length || (localTime >= from - marginSeconds && localTime <= to + marginSeconds);
        if (mayMeet && series.starts.size() >= mostListedTimes) {
            context.onProblem(series.file, line.line,
                              {translatable("more than {1} of its dates lie around the time "
                                            "searched; the others are left out"),
                               {TranslatableText::verbatim(std::to_string(mostListedTimes))}});
            return;
        }
        if (mayMeet) {
            series.addStart(context, time, length);
        }
    }
}

void excludeListedDates(ExpansionContext& context, Series& series, const RuleLine& line) {
    const std::int64_t from = series.from - marginSeconds;
    const std::int64_t to = series.to + marginSeconds;
    for (const std::string_view part : listParts(series.file.ics.slice(line.value))) {
        const auto value = parseTime(part);
        if (!value) {
            if (!trimmed(part).empty()) {
                context.onProblem(series.file, line.line,
                                  translatable("a date of EXDATE cannot be read and is left out"));
            }
            continue;
        }
        const std::int64_t localTime = civilSeconds(value->civil);
        if (localTime >= from && localTime <= to) {
            series.exclude(context, listedTime(series, line, *value));
        }
    }
}

} // namespace quorvel::icalendar
