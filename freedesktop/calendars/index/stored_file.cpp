#include "freedesktop/calendars/index/stored_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "freedesktop/calendars/index/stored_bytes.h"
#include "freedesktop/calendars/index/stored_message.h"

namespace quorvel::freedesktop::calendars {
namespace {

void put(ByteWriter& writer, const FileVersion& version) {
    writer.number(version.device);
    writer.number(version.inode);
    writer.number(version.size);
    writer.number(version.modified);
    writer.number(version.changed);
}

FileVersion takeVersion(ByteReader& reader) {
    FileVersion version;
    version.device = reader.number<std::uint64_t>();
    version.inode = reader.number<std::uint64_t>();
    version.size = reader.number<std::int64_t>();
    version.modified = reader.number<std::int64_t>();
    version.changed = reader.number<std::int64_t>();
    return version;
}

void put(ByteWriter& writer, const icalendar::Slice& slice) {
    writer.number(slice.offset);
    writer.number(slice.length);
}

// Checks that every slice lies within the text, so that damaged bytes are never used as one.
class SliceReader {
public:
    SliceReader(ByteReader& reader, std::size_t size)
        : m_reader(reader)
        , m_size(size) {}
    icalendar::Slice take() {
        icalendar::Slice slice;
        slice.offset = m_reader.number<std::uint32_t>();
        slice.length = m_reader.number<std::uint32_t>();
        m_isWithin = m_isWithin && std::size_t{slice.offset} + slice.length <= m_size;
        return slice;
    }
    bool isWithin() const { return m_isWithin; }

private:
    ByteReader& m_reader;
    std::size_t m_size;
    bool m_isWithin = true;
};

void put(ByteWriter& writer, const CivilTime& time) {
    writer.number(time.year);
    writer.number(time.month);
    writer.number(time.day);
    writer.number(time.hour);
    writer.number(time.minute);
    writer.number(time.second);
}

CivilTime takeCivilTime(ByteReader& reader) {
    CivilTime time;
    time.year = reader.number<int>();
    time.month = reader.number<int>();
    time.day = reader.number<int>();
    time.hour = reader.number<int>();
    time.minute = reader.number<int>();
    time.second = reader.number<int>();
    return time;
}

void put(ByteWriter& writer, const icalendar::EventTime& time) {
    writer.number(static_cast<unsigned>(time.kind));
    writer.number(time.localTime);
    writer.number(time.zone);
}

icalendar::EventTime takeEventTime(ByteReader& reader) {
    icalendar::EventTime time;
    time.kind = static_cast<icalendar::TimeKind>(std::min(reader.number<unsigned>(), 4U));
    time.localTime = reader.number<std::int64_t>();
    time.zone = reader.number<std::uint32_t>();
    return time;
}

void put(ByteWriter& writer, const icalendar::IcsEvent& event) {
    const auto putSlice = [&](const icalendar::Slice& slice) { put(writer, slice); };
    const auto putTime = [&](const icalendar::EventTime& time) { put(writer, time); };
    writer.number(event.line);
    writer.number(event.calendar);
    put(writer, event.uid);
    writer.optional(event.title, putSlice);
    writer.optional(event.location, putSlice);
    put(writer, event.start);
    writer.optional(event.end, putTime);
    writer.optional(event.duration, [&](const icalendar::Duration& duration) {
        writer.number(duration.days);
        writer.number(duration.seconds);
    });
    writer.optional(event.recurrenceId, putTime);
    writer.number((event.thisAndFuture ? 1U : 0U) | (event.cancelled ? 2U : 0U) |
                  (event.repeats ? 4U : 0U));
    writer.number(event.sequence);
    writer.number(event.stamp);
    writer.number(event.firstRule);
    writer.number(event.ruleCount);
    writer.number(event.firstDay);
    writer.number(event.lastDay);
}

icalendar::IcsEvent takeEvent(ByteReader& reader, SliceReader& slices) {
    const auto takeSlice = [&] { return slices.take(); };
    const auto takeTime = [&] { return takeEventTime(reader); };
    icalendar::IcsEvent event;
    event.line = reader.number<std::uint32_t>();
    event.calendar = reader.number<std::uint32_t>();
    event.uid = slices.take();
    event.title = reader.optional(takeSlice);
    event.location = reader.optional(takeSlice);
    event.start = takeEventTime(reader);
    event.end = reader.optional(takeTime);
    event.duration = reader.optional([&] {
        const auto days = reader.number<std::int64_t>();
        return icalendar::Duration{days, reader.number<std::int64_t>()};
    });
    event.recurrenceId = reader.optional(takeTime);
    const auto flags = reader.number<unsigned>();
    event.thisAndFuture = (flags & 1U) != 0;
    event.cancelled = (flags & 2U) != 0;
    event.repeats = (flags & 4U) != 0;
    event.sequence = reader.number<int>();
    event.stamp = reader.number<std::int64_t>();
    event.firstRule = reader.number<std::uint32_t>();
    event.ruleCount = reader.number<std::uint32_t>();
    event.firstDay = reader.number<std::int32_t>();
    event.lastDay = reader.number<std::int32_t>();
    return event;
}

void put(ByteWriter& writer, const icalendar::RuleLine& rule) {
    writer.number(static_cast<unsigned>(rule.kind));
    put(writer, rule.parameters);
    put(writer, rule.value);
    writer.number(rule.line);
}

icalendar::RuleLine takeRule(ByteReader& reader, SliceReader& slices) {
    icalendar::RuleLine rule;
    rule.kind = static_cast<icalendar::RuleKind>(std::min(reader.number<unsigned>(), 3U));
    rule.parameters = slices.take();
    rule.value = slices.take();
    rule.line = reader.number<std::uint32_t>();
    return rule;
}

void put(ByteWriter& writer, const icalendar::ZoneName& name) {
    writer.text(name.name);
    writer.number(name.calendar);
}

icalendar::ZoneName takeZoneName(ByteReader& reader) {
    icalendar::ZoneName name;
    name.name = reader.text();
    name.calendar = reader.number<std::uint32_t>();
    return name;
}

void put(ByteWriter& writer, const icalendar::FloatingZone& zone) {
    put(writer, zone.name);
    writer.number(zone.line);
}

icalendar::FloatingZone takeFloatingZone(ByteReader& reader) {
    icalendar::FloatingZone zone;
    zone.name = takeZoneName(reader);
    zone.line = reader.number<std::size_t>();
    return zone;
}

void put(ByteWriter& writer, const icalendar::ZoneDefinition& zone) {
    put(writer, zone.name);
    writer.number(zone.observances.size());
    for (const icalendar::ZoneObservance& observance : zone.observances) {
        put(writer, observance.start);
        writer.number(observance.offsetFrom);
        writer.number(observance.offsetTo);
        writer.number(observance.rules.size());
        for (const std::string& rule : observance.rules) {
            writer.text(rule);
        }
        writer.number(observance.dates.size());
        for (const CivilTime& date : observance.dates) {
            put(writer, date);
        }
    }
}

icalendar::ZoneDefinition takeZone(ByteReader& reader) {
    icalendar::ZoneDefinition zone;
    zone.name = takeZoneName(reader);
    zone.observances.resize(reader.count());
    for (icalendar::ZoneObservance& observance : zone.observances) {
        observance.start = takeCivilTime(reader);
        observance.offsetFrom = reader.number<int>();
        observance.offsetTo = reader.number<int>();
        observance.rules.resize(reader.count());
        for (std::string& rule : observance.rules) {
            rule = reader.text();
        }
        observance.dates.resize(reader.count());
        for (CivilTime& date : observance.dates) {
            date = takeCivilTime(reader);
        }
    }
    return zone;
}

// Whether all indices in the events are valid: they are used without a check later.
bool areIndicesValid(const icalendar::IcsFile& file) {
    const auto isInZones = [&](const icalendar::EventTime& time) {
        return time.kind != icalendar::TimeKind::zoned || time.zone < file.zoneNames.size();
    };
    return std::all_of(
        file.events.begin(), file.events.end(), [&](const icalendar::IcsEvent& event) {
            return isInZones(event.start) && (!event.end || isInZones(*event.end)) &&
                   (!event.recurrenceId || isInZones(*event.recurrenceId)) &&
                   std::size_t{event.firstRule} + event.ruleCount <= file.rules.size();
        });
}

} // namespace

std::string bytesOfFile(const FileVersion& version, const icalendar::IcsFile& file) {
    ByteWriter writer;
    put(writer, version);
    writer.text(file.text);
    writer.number(file.zoneNames.size());
    for (const icalendar::ZoneName& name : file.zoneNames) {
        put(writer, name);
    }
    writer.number(file.rules.size());
    for (const icalendar::RuleLine& rule : file.rules) {
        put(writer, rule);
    }
    writer.number(file.events.size());
    for (const icalendar::IcsEvent& event : file.events) {
        put(writer, event);
    }
    writer.number(file.zones.size());
    for (const icalendar::ZoneDefinition& zone : file.zones) {
        put(writer, zone);
    }
    writer.number(file.floatingZones.size());
    for (const icalendar::FloatingZone& zone : file.floatingZones) {
        put(writer, zone);
    }
    writer.optionalText(file.calendarName);
    writer.optionalText(file.calendarColour);
    writer.number(file.problems.size());
    for (const icalendar::FileProblem& problem : file.problems) {
        writer.number(problem.line);
        putMessage(writer, problem.what);
    }
    writer.number((file.isCalendar ? 1U : 0U) | (file.isTruncated ? 2U : 0U));
    return writer.take();
}

std::optional<icalendar::IcsFile> fileFromBytes(std::string_view bytes,
                                                const FileVersion& version) {
    ByteReader reader(bytes);
    if (takeVersion(reader) != version) {
        return std::nullopt;
    }
    icalendar::IcsFile file;
    file.text = reader.text();
    SliceReader slices(reader, file.text.size());
    file.zoneNames.resize(reader.count());
    for (icalendar::ZoneName& name : file.zoneNames) {
        name = takeZoneName(reader);
    }
    file.rules.resize(reader.count());
    for (icalendar::RuleLine& rule : file.rules) {
        rule = takeRule(reader, slices);
    }
    file.events.resize(reader.count());
    for (icalendar::IcsEvent& event : file.events) {
        event = takeEvent(reader, slices);
    }
    file.zones.resize(reader.count());
    for (icalendar::ZoneDefinition& zone : file.zones) {
        zone = takeZone(reader);
    }
    file.floatingZones.resize(reader.count());
    for (icalendar::FloatingZone& zone : file.floatingZones) {
        zone = takeFloatingZone(reader);
    }
    file.calendarName = reader.optionalText();
    file.calendarColour = reader.optionalText();
    file.problems.resize(reader.count());
    for (icalendar::FileProblem& problem : file.problems) {
        problem.line = reader.number<std::size_t>();
        problem.what = takeMessage(reader);
    }
    const auto flags = reader.number<unsigned>();
    file.isCalendar = (flags & 1U) != 0;
    file.isTruncated = (flags & 2U) != 0;
    const bool isRight = reader.isWhole() && slices.isWithin() && areIndicesValid(file);
    return isRight ? std::optional(std::move(file)) : std::nullopt;
}

} // namespace quorvel::freedesktop::calendars
