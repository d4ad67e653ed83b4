// Of a property that may stand once only the first line counts. An event without a usable DTSTART
// or RECURRENCE-ID is left out; one without a usable end is worth showing.
#include "icalendar/model/event_parser.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/ascii_text.h"
#include "base/civil_calendar.h"
#include "base/stable_hash.h"
#include "base/time_units.h"
#include "icalendar/model/event_days.h"
#include "icalendar/model/message_text.h"
#include "icalendar/model/zone_margin.h"
#include "icalendar/text/encoded_text.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

// Of a file; to look for a zone may open files.
constexpr std::uint32_t mostZonesToKnow = 100;

int sequenceNumber(std::string_view text) {
    const bool isOneDigit = text.size() == 1 && isAsciiDigit(text.front()); // nearly always
    return isOneDigit ? text.front() - '0' : std::atoi(std::string(text).c_str());
}

} // namespace

void EventParser::begin(const CalendarContext& calendar, std::size_t line) {
    m_calendar = calendar;
    m_event = {};
    m_event.line = static_cast<std::uint32_t>(line);
    m_event.calendar = calendar.number;
    m_event.cancelled = calendar.cancels;
    m_event.firstRule = static_cast<std::uint32_t>(m_builder.file().rules.size());
    m_textBefore = m_builder.file().text.size();
    m_unusableEnds.clear();
    m_hasStart = m_hasUid = m_isLeftOut = false;
    m_hasKnownZones = true;
}

void EventParser::addProperty(Property property, const ContentLine& content, std::size_t line) {
    switch (property) {
    case Property::uid:
        if (const auto uid = trimmed(content.value); !m_hasUid && !uid.empty()) {
            m_event.uid = m_builder.appendText(uid);
            m_hasUid = true;
        }
        break;
    case Property::summary:
        if (!m_event.title) {
            m_event.title = appendDecodedText(content, line);
        }
        break;
    case Property::location:
        if (!m_event.location) {
            m_event.location = appendDecodedText(content, line);
        }
        break;
    case Property::dtstart:
    case Property::recurrenceId:
        addDefiningTime(property, content, line);
        break;
    case Property::dtend:
        addEnd(content, line);
        break;
    case Property::duration:
        addDuration(content, line);
        break;
    case Property::status:
        m_event.cancelled =
            m_calendar.cancels || equalsIgnoringCase(trimmed(content.value), "CANCELLED");
        break;
    case Property::sequence:
        m_event.sequence = sequenceNumber(content.value.substr(0, 9));
        break;
    case Property::dtstamp:
        if (const auto stamp = parseTime(content.value)) {
            m_event.stamp = civilSeconds(stamp->civil);
        }
        break;
    case Property::rrule:
        addRule(RuleKind::rrule, content, line);
        break;
    case Property::exrule:
        addRule(RuleKind::exrule, content, line);
        break;
    case Property::rdate:
        addRule(RuleKind::rdate, content, line);
        break;
    case Property::exdate:
        addRule(RuleKind::exdate, content, line);
        break;
    default:
        break;
    }
}

// DTSTART and RECURRENCE-ID.
void EventParser::addDefiningTime(Property property, const ContentLine& content, std::size_t line) {
    const bool isStart = property == Property::dtstart;
    const auto value = parseTime(content.value);
    if (!value) {
        leaveOut(line, {translatable("an event is left out, its {1} cannot be read: {2}"),
                        {TranslatableText::verbatim(isStart ? "DTSTART" : "RECURRENCE-ID"),
                         quoted(content.value)}});
        return;
    }
    const EventTime time = eventTime(*value, content);
    if (isStart && !m_hasStart) {
        m_event.start = time;
        m_hasStart = true;
    } else if (!isStart && !m_event.recurrenceId) {
        m_event.recurrenceId = time;
        const auto range = parameterValue(content.parameters, "RANGE");
        m_event.thisAndFuture = range && equalsIgnoringCase(*range, "THISANDFUTURE");
    }
}

void EventParser::addEnd(const ContentLine& content, std::size_t line) {
    const auto value = parseTime(content.value);
    if (!value) {
        noteUnusableEnd("DTEND", content.value, line);
    } else if (!m_event.end) {
        m_event.end = eventTime(*value, content);
    }
}

void EventParser::addDuration(const ContentLine& content, std::size_t line) {
    const auto duration = parseDuration(content.value);
    if (!duration) {
        noteUnusableEnd("DURATION", content.value, line);
    } else if (!m_event.duration) {
        m_event.duration = duration;
    }
}

void EventParser::addRule(RuleKind kind, const ContentLine& content, std::size_t line) {
    if (m_builder.isFull()) {
        leaveOut(line, translatable("an event is left out, it has more dates than can be stored"));
        return;
    }
    const bool isList = kind == RuleKind::rdate || kind == RuleKind::exdate;
    if (m_calendar.isVCalendar1 && !isList && content.value.find('=') == std::string_view::npos) {
        m_builder.addProblem(line, {translatable("a rule of vCalendar 1.0 is not followed: {1}"),
                                    {quoted(content.value)}});
        return;
    }
    RuleLine rule;
    rule.kind = kind;
    rule.parameters = m_builder.appendText(content.parameters);
    rule.value = m_builder.appendText(content.value);
    if (m_calendar.isVCalendar1 && isList) { // its lists have semicolons
        std::string& text = m_builder.file().text;
        std::replace(text.end() - rule.value.length, text.end(), ';', ',');
    }
    rule.line = static_cast<std::uint32_t>(line);
    if (zoneParameter(content.parameters)) {
        const NamedZone& latest = m_latestZones.latest();
        m_hasKnownZones =
            m_hasKnownZones && content.parameters == latest.parameters && latest.isKnown;
    }
    m_builder.file().rules.push_back(rule);
    ++m_event.ruleCount;
    m_event.repeats = m_event.repeats || kind == RuleKind::rrule || kind == RuleKind::rdate;
}

Slice EventParser::appendDecodedText(const ContentLine& content, std::size_t line) {
    if (content.parameters.empty()) { // nearly always
        return m_builder.appendText(content.value);
    }
    const auto decoded = decodedText(content);
    if (!decoded) {
        return m_builder.appendText(content.value);
    }
    if (!decoded->isDecoded) {
        m_builder.addProblem(line,
                             translatable("a text in base64 cannot be read and is shown as it is"));
    }
    if (decoded->unknownCharset) {
        m_builder.addProblem(
            line, {translatable(
                       "the character set {1} is not known; the text is read as UTF-8 or Latin-1"),
                   {quoted(*decoded->unknownCharset)}});
    }
    return m_builder.appendText(decoded->text);
}

EventTime EventParser::eventTime(const TimeValue& value, const ContentLine& content) {
    EventTime time;
    time.localTime = civilSeconds(value.civil);
    if (value.isDate) {
        time.kind = TimeKind::date;
    } else if (value.isUtc) {
        time.kind = TimeKind::utc;
    } else if (const NamedZone* const zone = findZone(content.parameters)) {
        time.kind = TimeKind::zoned;
        time.zone = zone->index;
        m_hasKnownZones = m_hasKnownZones && zone->isKnown;
    } else {
        time.zone = m_calendar.number;
        m_hasKnownZones = false; // the calendar's zone may not be read yet
    }
    return time;
}

// Null where the parameters name no zone.
const EventParser::NamedZone* EventParser::findZone(std::string_view parameters) {
    if (parameters.empty()) {
        return nullptr;
    }
    const auto isIt = [&](const NamedZone& zone) {
        return zone.parameters == parameters && zone.calendar == m_calendar.number;
    };
    if (const NamedZone* const latest = m_latestZones.find(isIt)) {
        return latest;
    }
    const auto zone = zoneParameter(parameters);
    if (!zone || zone->empty()) {
        return nullptr;
    }
    const std::uint32_t index = m_builder.zoneIndex(*zone, m_calendar.number);
    NamedZone& added = m_latestZones.add();
    added = {std::string(parameters), m_calendar.number, index, isKnown(index)};
    return &added;
}

// Each name is asked for once, as all threads ask the same directory.
bool EventParser::isKnown(std::uint32_t zone) {
    const auto& names = m_builder.file().zoneNames;
    while (m_knownZones.size() <= zone && m_knownZones.size() < mostZonesToKnow) {
        m_knownZones.push_back(m_zoneIsKnown(names[m_knownZones.size()].name));
    }
    return zone < mostZonesToKnow && m_knownZones[zone];
}

void EventParser::end() {
    if (!m_isLeftOut && !m_hasStart) {
        leaveOut(m_event.line, translatable("an event without DTSTART is left out"));
    }
    if (m_isLeftOut) {
        removeFromFile();
        return;
    }
    if (!m_hasUid) {
        m_event.uid = m_builder.appendText(generatedUid());
    }
    reportUnusableEnds();
    if (endsBeforeItsStart()) {
        m_builder.addProblem(
            m_event.line,
            translatable("DTEND lies before DTSTART; the event is shown without a length"));
    }
    const DayRange days = daysOf(m_builder.file(), m_event, m_hasKnownZones);
    m_event.firstDay = days.first;
    m_event.lastDay = days.last;
    m_builder.addEvent(m_event);
}

void EventParser::abandon() {
    m_builder.addProblem(m_event.line, translatable("an event without END:VEVENT is left out"));
    removeFromFile();
}

// Only the first reason is reported.
void EventParser::leaveOut(std::size_t line, TranslatableText why) {
    if (!std::exchange(m_isLeftOut, true)) {
        m_builder.addProblem(line, std::move(why));
    }
}

void EventParser::removeFromFile() {
    m_builder.file().text.resize(m_textBefore);
    m_builder.file().rules.resize(m_event.firstRule);
}

void EventParser::noteUnusableEnd(const char* property, std::string_view value, std::size_t line) {
    if (m_unusableEnds.size() < IcsFileBuilder::mostProblems) {
        m_unusableEnds.push_back({line, property, quoted(value)});
    }
}

void EventParser::reportUnusableEnds() {
    const char* const problem =
        m_event.end || m_event.duration
            ? translatable("an event's {1} cannot be read: {2}; the other one holds")
        : m_event.start.kind == TimeKind::date
            ? translatable("an event's {1} cannot be read: {2}; it is shown for one day")
            : translatable("an event's {1} cannot be read: {2}; it is shown without a length");
    for (const UnusableEnd& end : m_unusableEnds) {
        m_builder.addProblem(end.line,
                             {problem, {TranslatableText::verbatim(end.property), end.value}});
    }
}

bool EventParser::endsBeforeItsStart() const {
    if (!m_event.end) {
        return false;
    }
    const EventTime& end = *m_event.end;
    const bool sameZone = end.kind == m_event.start.kind && end.zone == m_event.start.zone;
    return end.localTime - m_event.start.localTime <
           (sameZone ? 0 : -zoneMarginDays * secondsPerDay);
}

// The same for the same event in every process.
std::string EventParser::generatedUid() const {
    std::string source = std::to_string(m_event.start.localTime);
    for (const auto& part : {m_event.title, m_event.location}) {
        source += '\n';
        source += part ? m_builder.file().slice(*part) : std::string_view();
    }
    return "no-uid-" + hexDigits(stableHash(source), 16);
}

} // namespace quorvel::icalendar
