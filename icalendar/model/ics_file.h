// What is stored of one .ics text (RFC 5545 3.4, 3.6): its events' key properties, and the days
// that each can touch.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/translatable_text.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {

// As std::optional, but no larger than the value: there are hundreds of thousands of them.
template <typename Value>
class SmallOptional {
public:
    SmallOptional() = default;
    SmallOptional(const Value& value)
        : m_value(value) {}
    SmallOptional(const std::optional<Value>& value)
        : m_value(value.value_or(Value::absent())) {}

    bool has_value() const { return !(m_value == Value::absent()); }
    explicit operator bool() const { return has_value(); }
    const Value& operator*() const { return m_value; }
    const Value* operator->() const { return &m_value; }
    bool operator==(const SmallOptional&) const = default;

private:
    Value m_value = Value::absent();
};

// A part of IcsFile::text.
struct Slice {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    bool operator==(const Slice&) const = default;

    static constexpr Slice absent() { return {std::numeric_limits<std::uint32_t>::max(), 0}; }
};

enum class TimeKind : std::uint8_t { none, date, floating, utc, zoned };

struct EventTime {
    std::int64_t localTime = 0; // seconds since 1970 as if the local time were UTC
    // Where zoned, of IcsFile::zoneNames; where floating, the number of its VCALENDAR, as in
    // ZoneName; else 0.
    std::uint32_t zone = 0;
    TimeKind kind = TimeKind::floating;
    bool operator==(const EventTime&) const = default;

    static constexpr EventTime absent() { return {0, 0, TimeKind::none}; }
};

// Each VCALENDAR may define the same name differently.
struct ZoneName {
    std::string name;
    std::uint32_t calendar = 0; // counts from 0 within the file
    bool operator==(const ZoneName&) const = default;
};

// The zone that an iCalendar object names for its floating times.
struct FloatingZone {
    ZoneName name;
    std::size_t line = 0; // where it is named
    bool operator==(const FloatingZone&) const = default;
};

enum class RuleKind : std::uint8_t { rrule, exrule, rdate, exdate };

struct RuleLine {
    RuleKind kind = RuleKind::rrule;
    Slice parameters;
    Slice value;
    std::uint32_t line = 0;
    bool operator==(const RuleLine&) const = default;
};

struct IcsEvent {
    Slice uid;
    // In UTF-8, with the escapes of TEXT (RFC 5545 3.3.11): parseText() removes them.
    SmallOptional<Slice> title;
    SmallOptional<Slice> location;
    EventTime start;
    SmallOptional<EventTime> end;
    SmallOptional<Duration> duration;
    SmallOptional<EventTime> recurrenceId;
    std::int64_t stamp = std::numeric_limits<std::int64_t>::min(); // DTSTAMP, seconds since 1970
    int sequence = 0;
    bool thisAndFuture = false; // RANGE=THISANDFUTURE
    bool cancelled = false;
    bool repeats = false;        // RRULE or RDATE
    std::uint32_t line = 0;      // of its BEGIN
    std::uint32_t calendar = 0;  // as in ZoneName
    std::uint32_t firstRule = 0; // of IcsFile::rules
    std::uint32_t ruleCount = 0;
    // Days since 1970 outside of which no occurrence lies, whatever the zones are.
    std::int32_t firstDay = 0;
    std::int32_t lastDay = std::numeric_limits<std::int32_t>::max();
    bool operator==(const IcsEvent&) const = default;
};

// One STANDARD or DAYLIGHT part of a zone's definition.
struct ZoneObservance {
    CivilTime start;
    int offsetFrom = 0; // seconds east of UTC
    int offsetTo = 0;
    std::vector<std::string> rules;
    std::vector<CivilTime> dates;
    bool operator==(const ZoneObservance&) const = default;
};

struct ZoneDefinition {
    ZoneName name;
    std::vector<ZoneObservance> observances;
    bool operator==(const ZoneDefinition&) const = default;
};

struct FileProblem {
    std::size_t line = 0; // 0: unknown
    TranslatableText what;
    bool operator==(const FileProblem&) const = default;
};

struct IcsFile {
    std::string text; // the stored property values, one behind the other
    std::vector<IcsEvent> events;
    std::vector<RuleLine> rules;
    std::vector<ZoneName> zoneNames;
    std::vector<ZoneDefinition> zones;       // only those whose exact name is known nowhere else
    std::vector<FloatingZone> floatingZones; // by calendar, of those that name one
    std::optional<std::string> calendarName;
    std::optional<std::string> calendarColour;
    std::vector<FileProblem> problems;
    bool isCalendar = false;  // false: it has neither a VCALENDAR nor an event
    bool isTruncated = false; // the text had more events than the memory allowed
    bool operator==(const IcsFile&) const = default;

    std::string_view slice(Slice part) const {
        return std::string_view(text).substr(part.offset, part.length);
    }
    // Null where the calendar names none.
    const FloatingZone* floatingZoneOf(std::uint32_t calendar) const;
    // Of two versions of one event or of one override.
    static bool isNewer(const IcsEvent& one, const IcsEvent& other) {
        return std::pair(one.sequence, one.stamp) > std::pair(other.sequence, other.stamp);
    }
    // Exactly one UID, and neither name nor colour of a calendar: a file of a vdir.
    bool looksLikeOneEvent() const;
    // Estimated, in bytes, with the memory that collectEvents() takes for the events; the second
    // one where the number of overrides among them is known.
    std::size_t sizeInMemory() const;
    std::size_t sizeInMemory(std::size_t overrides) const;
};

} // namespace quorvel::icalendar
