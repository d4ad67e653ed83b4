// The properties that are stored, by name (RFC 5545 3.7, 3.8; RFC 7986 5; what programs add), and
// the name of a line. In line, as the name of every line is looked up here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {

enum class Property {
    none,
    begin,
    end,
    uid,
    summary,
    location,
    dtstart,
    dtend,
    duration,
    recurrenceId,
    status,
    sequence,
    dtstamp,
    rrule,
    exrule,
    rdate,
    exdate,
    tzid,
    tzOffsetFrom,
    tzOffsetTo,
    version,
    method,
    calendarZone,
    calendarName,
    calendarColour,
};

struct PropertyName {
    std::string_view name;
    Property property;
};

inline constexpr PropertyName propertyNames[] = {
    {"BEGIN", Property::begin},
    {"END", Property::end},
    {"UID", Property::uid},
    {"SUMMARY", Property::summary},
    {"LOCATION", Property::location},
    {"DTSTART", Property::dtstart},
    {"DTEND", Property::dtend},
    {"DURATION", Property::duration},
    {"RECURRENCE-ID", Property::recurrenceId},
    {"STATUS", Property::status},
    {"SEQUENCE", Property::sequence},
    {"DTSTAMP", Property::dtstamp},
    {"RRULE", Property::rrule},
    {"EXRULE", Property::exrule},
    {"RDATE", Property::rdate},
    {"EXDATE", Property::exdate},
    {"TZID", Property::tzid},
    {"TZOFFSETFROM", Property::tzOffsetFrom},
    {"TZOFFSETTO", Property::tzOffsetTo},
    {"VERSION", Property::version},
    {"METHOD", Property::method},
    {"X-WR-TIMEZONE", Property::calendarZone},
    {"X-WR-CALNAME", Property::calendarName},
    {"NAME", Property::calendarName},
    {"X-APPLE-CALENDAR-COLOR", Property::calendarColour},
    {"COLOR", Property::calendarColour},
};

// Regardless of the case of letters.
constexpr std::uint32_t nameHash(std::uint32_t hash, char c) {
    return hash * 31 + (static_cast<unsigned char>(c) & 0xDFU);
}

// The places of the names in their table, by hash: every line of a calendar is asked for here, and
// most of them are of no interest, which nearly always shows by their first two characters.
class PropertyTable {
public:
    constexpr PropertyTable() {
        std::uint8_t number = 0;
        for (const PropertyName& entry : propertyNames) {
            std::uint32_t hash = 0;
            for (const char c : entry.name) {
                hash = nameHash(hash, c);
            }
            while (m_places[hash % size] != 0) {
                ++hash;
            }
            m_places[hash % size] = ++number;
            m_beginnings[beginningOf(entry.name)] = true;
        }
    }
    bool isOfInterest(std::string_view line) const {
        return line.size() < 2 || m_beginnings[beginningOf(line)];
    }
    // The hash is that of all its characters.
    Property find(std::string_view name, std::uint32_t hash) const {
        for (; m_places[hash % size] != 0; ++hash) {
            const PropertyName& entry = propertyNames[m_places[hash % size] - 1U];
            if (equalsIgnoringCase(name, entry.name)) {
                return entry.property;
            }
        }
        return Property::none;
    }

private:
    static constexpr std::uint32_t size = 256;
    static constexpr std::size_t beginningOf(std::string_view name) {
        return nameHash(nameHash(0, name[0]), name[1]) % 1024;
    }
    std::array<std::uint8_t, size> m_places{}; // from 1; 0: none
    std::array<bool, 1024> m_beginnings{};
};

inline constexpr PropertyTable propertyTable;

// The part of a line before its value or parameters.
struct LineName {
    std::size_t length = 0;
    Property property = Property::none;
};

inline LineName nameOf(std::string_view line) {
    std::size_t length = 0;
    std::uint32_t hash = 0;
    for (const char c : line) {
        if (c == ':' || c == ';' || c == '\r' || c == '\n') {
            break;
        }
        hash = nameHash(hash, c);
        ++length;
    }
    return {length, propertyTable.find(line.substr(0, length), hash)};
}

} // namespace quorvel::icalendar
