// Walking the lines of a calendar: which component they stand in, and which of them are kept.
#include "icalendar/model/ics_file_parser.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/ascii_text.h"
#include "base/stable_hash.h"
#include "base/time_units.h"
#include "icalendar/model/property_names.h"
#include "icalendar/text/content_lines.h"
#include "icalendar/text/encoded_text.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t mostProblems = 50;
constexpr std::size_t mostZones = 200;
constexpr std::size_t mostObservances = 500;
constexpr std::size_t longestZoneRule = 500;
constexpr std::size_t mostZoneDates = 1000;
// Zones lie at most a day off UTC, the user's own included.
constexpr std::int64_t marginDays = 2;
constexpr int farthestOffset = 86400;
constexpr std::size_t longestQuotedLine = std::size_t{4} << 20U; // bytes, with all that follows
constexpr std::size_t pieceToDecode = std::size_t{256} << 10U;   // bytes

// A large one lies in pages of its own, and those that were never written take no room; to copy it
// would.
template <typename Container>
void trim(Container& container) {
    constexpr std::size_t large = std::size_t{1} << 20U; // bytes
    if (container.size() * sizeof(container[0]) < large) {
        container.shrink_to_fit();
    }
}

// "+0200", "-023000".
std::optional<int> readOffset(std::string_view text) {
    text = trimmed(text);
    if (text.size() != 5 && text.size() != 7) {
        return std::nullopt;
    }
    int parts[3] = {0, 0, 0};
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (!isAsciiDigit(text[i])) {
            return std::nullopt;
        }
        parts[(i - 1) / 2] = parts[(i - 1) / 2] * 10 + (text[i] - '0');
    }
    const int seconds = parts[0] * 3600 + parts[1] * 60 + parts[2];
    if ((text[0] != '+' && text[0] != '-') || seconds > farthestOffset) {
        return std::nullopt;
    }
    return text[0] == '-' ? -seconds : seconds;
}

// For a message: printable, and not the whole of a line of megabytes.
std::string printable(std::string_view text) {
    constexpr std::size_t longest = 60;
    std::string result;
    for (const char c : validUtf8(text.substr(0, longest))) {
        const auto byte = static_cast<unsigned char>(c);
        result += byte < 0x20 || byte == 0x7F ? '?' : c;
    }
    return text.size() > longest ? result + "..." : result;
}

} // namespace

class IcsFileParser::Reader {
public:
    Reader(const std::function<bool(std::string_view)>& zoneIsKnown, std::size_t mostBytes)
        : m_zoneIsKnown(zoneIsKnown)
        , m_mostBytes(mostBytes) {}

    std::size_t read(std::string_view piece) {
        const bool mayLackItsMark = m_bytesTaken == 0 && piece.size() < Utf16Decoder::markSize;
        return mayLackItsMark ? 0 : take(piece, false);
    }

    // Makes room at once, as growing bit by bit copies all of it again and again.
    void expect(std::size_t bytes) {
        const std::size_t events = m_file.events.size();
        if (m_file.events.capacity() > events + events / 8 || m_bytesTaken == 0) {
            return;
        }
        const double ratio = static_cast<double>(bytes) / static_cast<double>(m_bytesTaken);
        constexpr double surplus = 1.02;
        const auto more = [&](std::size_t count) {
            return static_cast<std::size_t>(static_cast<double>(count) * (1 + ratio) * surplus);
        };
        m_file.events.reserve(std::min(more(events), m_mostBytes / sizeof(IcsEvent)));
        m_file.text.reserve(std::min(more(m_file.text.size()), m_mostBytes));
    }

    IcsFile finish(std::string_view piece) {
        take(piece, true);
        finish();
        return std::move(m_file);
    }

private:
    enum class Place { calendar, event, zone, observance, other };

    // How much of it was read.
    std::size_t take(std::string_view piece, bool isLast) {
        if (m_bytesTaken == 0) {
            m_decoder = Utf16Decoder::forTextWithMark(piece);
        }
        const std::size_t taken = m_decoder ? decode(piece, isLast) : readLines(piece, isLast);
        m_bytesTaken += taken;
        return taken;
    }

    // In small parts, as a text in memory is one piece.
    std::size_t decode(std::string_view piece, bool isLast) {
        const std::size_t begin = m_bytesTaken == 0 ? Utf16Decoder::markSize : 0;
        for (std::size_t at = begin; at < piece.size(); at += pieceToDecode) {
            m_decoder->decode(piece.substr(at, pieceToDecode), m_decoded);
            m_decoded.erase(0, readLines(m_decoded, false));
        }
        if (isLast) {
            m_decoder->finish(m_decoded);
            m_decoded.erase(0, readLines(m_decoded, true));
        }
        return piece.size();
    }

    std::size_t readLines(std::string_view piece, bool isLast) {
        m_lines.continueWith(piece, isLast);
        while (m_lines.next(m_raw)) {
            if (!m_file.isTruncated) {
                readLine();
            }
        }
        return piece.size() - m_lines.remaining().size();
    }

    void readLine() {
        const bool mayBeQuoted =
            m_quotedLine != 0 || (!m_raw.text.empty() && m_raw.text.back() == '=');
        if (!mayBeQuoted || !isPartOfQuotedLine()) {
            readWholeLine();
        }
    }

    bool isPartOfQuotedLine() {
        const bool isContinued = m_quotedLine != 0 && continueQuotedLine();
        return isContinued ||
               (!m_raw.text.empty() && m_raw.text.back() == '=' && beginQuotedLine());
    }

    // Quoted-printable goes on in the next line behind an equals sign at the end, whatever that
    // line looks like.
    bool beginQuotedLine() {
        std::string text = unfoldedQuotedPrintable(m_raw.text);
        const auto line = splitContentLine(text);
        if (!line || transferEncoding(line->parameters) != TransferEncoding::quotedPrintable) {
            return false;
        }
        m_quotedLine = m_raw.number;
        m_quoted = std::move(text);
        m_quoted.pop_back();
        return true;
    }

    // False where the line is not part of the open one, which ends before it: at a component's
    // bounds, as an equals sign is easily left at the end of a text.
    bool continueQuotedLine() {
        const Property property = nameOf(m_raw.text).property;
        if (property == Property::begin || property == Property::end) {
            endQuotedLine();
            return false;
        }
        const std::string more = unfoldedQuotedPrintable(m_raw.text);
        const bool goesOn = !more.empty() && more.back() == '=';
        if (m_quoted.size() + more.size() <= longestQuotedLine) {
            m_quoted.append(more, 0, more.size() - (goesOn ? 1 : 0));
        }
        if (!goesOn) {
            endQuotedLine();
        }
        return true;
    }

    void endQuotedLine() {
        const RawLine current = std::exchange(m_raw, {m_quoted, false, m_quotedLine});
        m_quotedLine = 0;
        readWholeLine();
        m_raw = current;
    }

    void readWholeLine() {
        if (m_raw.text.empty()) {
            return;
        }
        std::string_view text = m_raw.text;
        if (!m_raw.folded && !propertyTable.isOfInterest(text) && text.front() != ':' &&
            text.front() != ';' && text.find(':') != std::string_view::npos) {
            return;
        }
        LineName name = nameOf(text);
        const auto end = [&] { return name.length < text.size() ? text[name.length] : '\0'; };
        // A fold may stand in the name already; else the name tells whether to unfold at all.
        if (m_raw.folded && end() != ':' && end() != ';') {
            text = unfolded(m_raw, m_scratch);
            name = nameOf(text);
        }
        if (name.length == 0 || (end() != ':' && end() != ';')) {
            if (!trimmed(text).empty()) {
                malformedLine(text);
            }
            return;
        }
        if (name.property == Property::none) {
            if (end() == ';' && text.find(':', name.length) == std::string_view::npos) {
                malformedLine(text);
            }
            return;
        }
        auto line = splitContentLine(unfolded(m_raw, m_scratch), name.length);
        if (line && m_raw.folded &&
            transferEncoding(line->parameters) == TransferEncoding::quotedPrintable) {
            m_scratch = unfoldedQuotedPrintable(m_raw.text);
            line = splitContentLine(m_scratch, name.length);
        }
        if (!line) {
            malformedLine(text);
            return;
        }
        readProperty(name.property, *line);
    }

    void readProperty(Property property, const ContentLine& line) {
        if (property == Property::begin) {
            begin(trimmed(line.value));
        } else if (property == Property::end) {
            end(trimmed(line.value));
        } else if (m_place == Place::event && m_nested == 0) {
            readEventProperty(property, line);
        } else if (m_place == Place::zone || m_place == Place::observance) {
            readZoneProperty(property, line);
        } else if (m_place == Place::calendar) {
            readCalendarProperty(property, line);
        }
    }

    void begin(std::string_view component) {
        if (equalsIgnoringCase(component, "VCALENDAR")) {
            dropOpenEvent();
            m_calendar += m_sawCalendar ? 1 : 0;
            m_sawCalendar = true;
            m_calendarOpen = true;
            m_calendarCancels = false;
            m_isVCalendar1 = false;
            m_place = Place::calendar;
            m_nested = 0;
        } else if (equalsIgnoringCase(component, "VEVENT")) {
            dropOpenEvent();
            beginEvent();
        } else if (m_place == Place::event || m_place == Place::other) {
            ++m_nested;
        } else if (equalsIgnoringCase(component, "VTIMEZONE")) {
            m_place = Place::zone;
            m_zone = {};
            m_zoneWanted = false;
        } else if (m_place == Place::zone && (equalsIgnoringCase(component, "STANDARD") ||
                                              equalsIgnoringCase(component, "DAYLIGHT"))) {
            m_place = Place::observance;
            m_observance = {};
        } else {
            m_place = Place::other;
            m_nested = 0;
        }
    }

    void end(std::string_view component) {
        if (equalsIgnoringCase(component, "VEVENT")) {
            if (m_place == Place::event) {
                endEvent();
                m_place = Place::calendar;
                m_nested = 0;
            }
        } else if (equalsIgnoringCase(component, "VCALENDAR")) {
            dropOpenEvent();
            m_calendarOpen = false;
            m_place = Place::calendar;
            m_nested = 0;
        } else if (equalsIgnoringCase(component, "VTIMEZONE")) {
            if (m_place == Place::zone || m_place == Place::observance) {
                endZone();
                m_place = Place::calendar;
            }
        } else if (m_place == Place::observance) {
            endObservance();
            m_place = Place::zone;
        } else if (m_nested > 0) {
            --m_nested;
        } else if (m_place == Place::other) {
            m_place = Place::calendar;
        }
    }

    // ---- the calendar

    void readCalendarProperty(Property property, const ContentLine& line) {
        if (property == Property::version) {
            m_isVCalendar1 = trimmed(line.value) == "1.0";
        } else if (property == Property::method) {
            m_calendarCancels = equalsIgnoringCase(trimmed(line.value), "CANCEL");
        } else if (property == Property::calendarZone) {
            readFloatingZone(trimmed(line.value));
        } else if (property == Property::calendarName && !m_file.calendarName) {
            m_file.calendarName = parseText(line.value);
        } else if (property == Property::calendarColour && !m_file.calendarColour) {
            m_file.calendarColour = validUtf8(trimmed(line.value));
        }
    }

    void readFloatingZone(std::string_view name) {
        const bool isFirst = m_file.floatingZoneOf(m_calendar) == nullptr;
        if (!name.empty() && isFirst && bytesKept() <= m_mostBytes) {
            m_file.floatingZones.push_back({{parseText(name), m_calendar}, m_raw.number});
            m_zoneBytes += sizeof(FloatingZone) + name.size();
        }
    }

    // ---- an event

    void beginEvent() {
        m_place = Place::event;
        m_nested = 0;
        m_event = {};
        m_event.line = static_cast<std::uint32_t>(m_raw.number);
        m_event.calendar = m_calendar;
        m_event.cancelled = m_calendarCancels;
        m_event.firstRule = static_cast<std::uint32_t>(m_file.rules.size());
        m_textBefore = m_file.text.size();
        m_unreadableEnds.clear();
        m_hasStart = m_hasUid = m_broken = false;
    }

    void readEventProperty(Property property, const ContentLine& line) {
        switch (property) {
        case Property::uid:
            if (!m_hasUid && !trimmed(line.value).empty()) {
                m_event.uid = keep(trimmed(line.value));
                m_hasUid = true;
            }
            break;
        case Property::summary:
            if (!m_event.title) {
                m_event.title = keepText(line);
            }
            break;
        case Property::location:
            if (!m_event.location) {
                m_event.location = keepText(line);
            }
            break;
        case Property::dtstart:
            if (const auto time = eventTime("DTSTART", line); time && !m_hasStart) {
                m_event.start = *time;
                m_hasStart = true;
            }
            break;
        case Property::dtend:
            readEnd(line);
            break;
        case Property::duration:
            readEventDuration(line);
            break;
        case Property::recurrenceId:
            if (const auto time = eventTime("RECURRENCE-ID", line); time && !m_event.recurrenceId) {
                m_event.recurrenceId = time;
                const auto range = parameterValue(line.parameters, "RANGE");
                m_event.thisAndFuture = range && equalsIgnoringCase(*range, "THISANDFUTURE");
            }
            break;
        case Property::status:
            m_event.cancelled =
                m_calendarCancels || equalsIgnoringCase(trimmed(line.value), "CANCELLED");
            break;
        case Property::sequence:
            m_event.sequence = std::atoi(std::string(line.value.substr(0, 9)).c_str());
            break;
        case Property::dtstamp:
            if (const auto stamp = parseTime(line.value)) {
                m_event.stamp = civilSeconds(stamp->civil);
            }
            break;
        case Property::rrule:
            keepRule(RuleKind::rrule, line);
            break;
        case Property::exrule:
            keepRule(RuleKind::exrule, line);
            break;
        case Property::rdate:
            keepRule(RuleKind::rdate, line);
            break;
        case Property::exdate:
            keepRule(RuleKind::exdate, line);
            break;
        default:
            break;
        }
    }

    // An event is worth showing without its end, as long as its start is known.
    void readEnd(const ContentLine& line) {
        const auto value = parseTime(line.value);
        if (!value) {
            unreadableEnd("DTEND", line.value);
        } else if (!m_event.end) {
            m_event.end = timeOf(*value, line);
        }
    }

    Slice keepText(const ContentLine& line) {
        const auto decoded = decodedText(line);
        if (!decoded) {
            return keep(line.value);
        }
        if (!decoded->isDecoded) {
            problem(m_raw.number, "a text in base64 cannot be read and is shown as it is");
        }
        if (decoded->otherName) {
            problem(m_raw.number, "the character set \"" + printable(*decoded->otherName) +
                                      "\" is not known; the text is read as UTF-8 or Latin-1");
        }
        return keep(decoded->text);
    }

    void readEventDuration(const ContentLine& line) {
        const auto duration = parseDuration(line.value);
        if (!duration) {
            unreadableEnd("DURATION", line.value);
        } else if (!m_event.duration) {
            m_event.duration = duration;
        }
    }

    void unreadableEnd(std::string_view property, std::string_view value) {
        if (m_unreadableEnds.size() < mostProblems) {
            m_unreadableEnds.push_back({m_raw.number, "an event's " + std::string(property) +
                                                          " cannot be read: \"" + printable(value) +
                                                          "\""});
        }
    }

    std::optional<EventTime> eventTime(std::string_view property, const ContentLine& line) {
        const auto value = parseTime(line.value);
        if (!value) {
            broken(property, line.value);
            return std::nullopt;
        }
        return timeOf(*value, line);
    }

    EventTime timeOf(const TimeValue& value, const ContentLine& line) {
        EventTime time;
        time.localTime = civilSeconds(value.civil);
        if (value.isDate) {
            time.kind = TimeKind::date;
        } else if (value.isUtc) {
            time.kind = TimeKind::utc;
        } else if (const auto zone = zoneParameter(line.parameters); zone && !zone->empty()) {
            time.kind = TimeKind::zoned;
            time.zone = zoneIndex(*zone);
        } else {
            time.zone = m_calendar;
        }
        return time;
    }

    std::uint32_t zoneIndex(std::string_view name) {
        auto& names = m_file.zoneNames;
        for (std::size_t i = names.size(); i > 0 && i + 16 > names.size(); --i) {
            if (names[i - 1].calendar == m_calendar && names[i - 1].name == name) {
                return static_cast<std::uint32_t>(i - 1);
            }
        }
        names.push_back({std::string(name), m_calendar});
        m_zoneBytes += sizeof(ZoneName) + name.size();
        return static_cast<std::uint32_t>(names.size() - 1);
    }

    void keepRule(RuleKind kind, const ContentLine& line) {
        if (bytesKept() > m_mostBytes) {
            leaveOut("an event is left out, it has more dates than can be kept");
            return;
        }
        const bool isList = kind == RuleKind::rdate || kind == RuleKind::exdate;
        if (m_isVCalendar1 && !isList && line.value.find('=') == std::string_view::npos) {
            problem(m_raw.number,
                    "a rule of vCalendar 1.0 is not followed: \"" + printable(line.value) + "\"");
            return;
        }
        RuleLine rule;
        rule.kind = kind;
        rule.parameters = keep(line.parameters);
        rule.value = keep(line.value);
        if (m_isVCalendar1 && isList) { // its lists are parted by semicolons
            std::replace(m_file.text.end() - rule.value.length, m_file.text.end(), ';', ',');
        }
        rule.line = static_cast<std::uint32_t>(m_raw.number);
        m_file.rules.push_back(rule);
        ++m_event.ruleCount;
        m_event.repeats = m_event.repeats || kind == RuleKind::rrule || kind == RuleKind::rdate;
    }

    void endEvent() {
        if (!m_broken && !m_hasStart) {
            problem(m_event.line, "an event without DTSTART is left out");
            m_broken = true;
        }
        if (m_broken) {
            forgetEvent();
            return;
        }
        if (!m_hasUid) {
            m_event.uid = keep(madeUpUid());
        }
        reportUnreadableEnds();
        if (endsBeforeItsStart()) {
            problem(m_event.line, "DTEND lies before DTSTART; the event is shown without a length");
        }
        setDays();
        m_file.events.push_back(m_event);
        m_overrides += m_event.recurrenceId ? 1 : 0;
        if (bytesKept() > m_mostBytes) {
            problem(m_event.line, "there are more events than can be kept: those that follow "
                                  "are left out");
            m_file.isTruncated = true;
        }
    }

    void reportUnreadableEnds() {
        const char* const outcome = m_event.end || m_event.duration ? "; the other one holds"
                                    : m_event.start.kind == TimeKind::date
                                        ? "; it is shown for one day"
                                        : "; it is shown without a length";
        for (FileProblem& end : m_unreadableEnds) {
            problem(end.line, std::move(end.what) + outcome);
        }
    }

    void forgetEvent() {
        m_file.text.resize(m_textBefore);
        m_file.rules.resize(m_event.firstRule);
    }

    void dropOpenEvent() {
        if (m_place == Place::event) {
            problem(m_event.line, "an event without END:VEVENT is left out");
            forgetEvent();
            m_place = Place::calendar;
        }
    }

    bool endsBeforeItsStart() const {
        if (!m_event.end) {
            return false;
        }
        const std::int64_t length = m_event.end->localTime - m_event.start.localTime;
        const bool sameZone =
            m_event.end->kind == m_event.start.kind && m_event.end->zone == m_event.start.zone;
        return length < (sameZone ? 0 : -marginDays * secondsPerDay);
    }

    // Stays the same as long as the event does.
    std::string madeUpUid() const {
        const EventTime& start = m_event.start;
        std::string source = std::to_string(start.localTime);
        for (const auto& part : {m_event.title, m_event.location}) {
            source += '\n';
            source += part ? m_file.slice(*part) : std::string_view();
        }
        return "no-uid-" + hexDigits(stableHash(source), 16);
    }

    void setDays() {
        const std::int64_t start = dayOf(m_event.start.localTime);
        std::int64_t first = start;
        std::int64_t last = start;
        for (std::uint32_t i = 0; i < m_event.ruleCount; ++i) {
            widen(m_file.rules[m_event.firstRule + i], first, last);
        }
        std::int64_t length = 1;
        if (m_event.end) {
            length += std::max<std::int64_t>(dayOf(m_event.end->localTime) - start, 0);
        } else if (m_event.duration) {
            length += std::max<std::int64_t>(m_event.duration->days, 0) +
                      std::max<std::int64_t>(m_event.duration->seconds, 0) / secondsPerDay + 1;
        }
        constexpr std::int64_t farthest = std::numeric_limits<std::int32_t>::max();
        m_event.firstDay = static_cast<std::int32_t>(std::max(first - marginDays, -farthest));
        m_event.lastDay = static_cast<std::int32_t>(std::min(last + length + marginDays, farthest));
    }

    void widen(const RuleLine& rule, std::int64_t& first, std::int64_t& last) const {
        if (rule.kind == RuleKind::rrule) {
            const auto until = untilOf(m_file.slice(rule.value));
            last = std::max(last, until ? civilDays(until->civil)
                                        : std::int64_t{std::numeric_limits<std::int32_t>::max()});
        } else if (rule.kind == RuleKind::rdate) {
            for (const std::string_view part : listParts(m_file.slice(rule.value))) {
                if (const auto date = parsePeriodOrTime(part)) {
                    first = std::min(first, civilDays(date->start.civil));
                    last = std::max(last, lastDayOf(*date));
                }
            }
        }
    }

    static std::int64_t lastDayOf(const PeriodValue& period) {
        std::int64_t day = civilDays(period.start.civil);
        if (period.end) {
            day = std::max(day, civilDays(period.end->civil));
        } else if (period.duration) {
            day += std::max<std::int64_t>(period.duration->days, 0) +
                   std::max<std::int64_t>(period.duration->seconds, 0) / secondsPerDay + 1;
        }
        return day;
    }

    // ---- a zone's definition

    void readZoneProperty(Property property, const ContentLine& line) {
        if (m_place == Place::zone) {
            if (property == Property::tzid) {
                m_zone.name = {parseText(trimmed(line.value)), m_calendar};
                m_zoneWanted = m_file.zones.size() < mostZones && !m_zoneIsKnown(m_zone.name.name);
            }
            return;
        }
        if (!m_zoneWanted) {
            return;
        }
        if (property == Property::dtstart) {
            if (const auto time = parseTime(line.value)) {
                m_observance.start = time->civil;
                m_observanceStarts = true;
            }
        } else if (property == Property::tzOffsetFrom) {
            m_observance.offsetFrom = readOffset(line.value).value_or(0);
        } else if (property == Property::tzOffsetTo) {
            if (const auto offset = readOffset(line.value)) {
                m_observance.offsetTo = *offset;
                m_observanceHasOffset = true;
            }
        } else if (property == Property::rrule && m_observance.rules.size() < mostObservances &&
                   line.value.size() <= longestZoneRule) {
            m_observance.rules.emplace_back(line.value);
        } else if (property == Property::rdate) {
            for (const std::string_view part : listParts(line.value)) {
                const auto time = parsePeriodOrTime(part);
                if (time && m_observance.dates.size() < mostZoneDates) {
                    m_observance.dates.push_back(time->start.civil);
                }
            }
        }
    }

    void endObservance() {
        if (m_zoneWanted && m_observanceStarts && m_observanceHasOffset &&
            m_zone.observances.size() < mostObservances && bytesKept() <= m_mostBytes) {
            m_zoneBytes += sizeof(ZoneObservance) +
                           m_observance.rules.size() * (sizeof(std::string) + longestZoneRule) +
                           m_observance.dates.size() * sizeof(CivilTime);
            m_zone.observances.push_back(std::move(m_observance));
        }
        m_observance = {};
        m_observanceStarts = m_observanceHasOffset = false;
    }

    void endZone() {
        if (m_zoneWanted && !m_zone.name.name.empty() && !m_zone.observances.empty()) {
            m_zoneBytes += m_zone.name.name.size();
            m_file.zones.push_back(std::move(m_zone));
        }
        m_zone = {};
        m_zoneWanted = false;
    }

    // ---- all of it

    Slice keep(std::string_view text) {
        const Slice part{static_cast<std::uint32_t>(m_file.text.size()),
                         static_cast<std::uint32_t>(text.size())};
        m_file.text.append(text);
        return part;
    }

    void malformedLine(std::string_view text) {
        problem(m_raw.number, "a line without a name and a value: \"" + printable(text) + "\"");
    }

    void broken(std::string_view property, std::string_view value) {
        leaveOut("an event is left out, its " + std::string(property) + " cannot be read: \"" +
                 printable(value) + "\"");
    }

    void leaveOut(std::string why) {
        if (!std::exchange(m_broken, true)) {
            problem(m_raw.number, std::move(why));
        }
    }

    std::size_t bytesKept() const { return m_file.sizeInMemory(m_overrides) + m_zoneBytes; }

    void problem(std::size_t line, std::string what) {
        if (m_file.problems.size() < mostProblems) {
            m_file.problems.push_back({line, std::move(what)});
        } else {
            ++m_moreProblems;
        }
    }

    void finish() {
        if (m_quotedLine != 0) {
            endQuotedLine();
        }
        const std::size_t lastLine = m_raw.number;
        const bool endsInEvent = m_place == Place::event;
        dropOpenEvent();
        m_file.isCalendar = m_sawCalendar || !m_file.events.empty();
        if (!m_file.isCalendar) {
            m_file.problems.clear();
            m_moreProblems = 0;
            problem(lastLine == 0 ? 0 : 1, lastLine == 0
                                               ? "the file is empty"
                                               : "no calendar: BEGIN:VCALENDAR is missing");
        } else if (m_calendarOpen && !endsInEvent && !m_file.isTruncated) {
            problem(lastLine, "the file ends before END:VCALENDAR");
        }
        if (m_moreProblems > 0) {
            m_file.problems.push_back({0, "and " + std::to_string(m_moreProblems) + " more"});
        }
        trim(m_file.text);
        trim(m_file.events);
        trim(m_file.rules);
    }

    ContentLineReader m_lines;
    std::optional<Utf16Decoder> m_decoder; // where it is UTF-16
    std::string m_decoded;                 // of that, what no line was made of yet
    const std::function<bool(std::string_view)>& m_zoneIsKnown;
    std::size_t m_mostBytes;
    RawLine m_raw;
    std::string m_scratch;
    std::size_t m_quotedLine =
        0;                // the number of the line of quoted-printable that is open; 0: none
    std::string m_quoted; // of that, what came so far
    IcsFile m_file;
    std::size_t m_moreProblems = 0;
    std::size_t m_bytesTaken = 0;
    std::size_t m_overrides = 0;
    std::size_t m_zoneBytes = 0; // near enough

    Place m_place = Place::calendar;
    std::size_t m_nested = 0; // components within an event, or within one that is of no interest
    bool m_sawCalendar = false;
    std::uint32_t m_calendar = 0; // which one of the file it is
    bool m_calendarOpen = false;
    bool m_calendarCancels = false; // everything in it
    bool m_isVCalendar1 = false;

    IcsEvent m_event;
    std::size_t m_textBefore = 0;
    bool m_hasStart = false;
    bool m_hasUid = false;
    bool m_broken = false;
    std::vector<FileProblem> m_unreadableEnds; // of the event, DTEND and DURATION

    ZoneDefinition m_zone;
    bool m_zoneWanted = false;
    ZoneObservance m_observance;
    bool m_observanceStarts = false;
    bool m_observanceHasOffset = false;
};

IcsFileParser::IcsFileParser(const std::function<bool(std::string_view)>& zoneIsKnown,
                             std::size_t mostBytes)
    : m_reader(std::make_unique<Reader>(zoneIsKnown, mostBytes)) {}

IcsFileParser::~IcsFileParser() = default;

std::size_t IcsFileParser::read(std::string_view piece) {
    return m_reader->read(piece);
}

void IcsFileParser::expect(std::size_t bytes) {
    m_reader->expect(bytes);
}

IcsFile IcsFileParser::finish(std::string_view piece) {
    return m_reader->finish(piece);
}

IcsFile parseIcsFile(std::string_view bytes,
                     const std::function<bool(std::string_view)>& zoneIsKnown) {
    return IcsFileParser(zoneIsKnown).finish(bytes);
}

} // namespace quorvel::icalendar
