// The properties that are stored, by name (RFC 5545 3.7, 3.8; RFC 7986 5; what programs add), and
// the name of a line. In line, as the name of every line is looked up here.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
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

// A name of so many characters or fewer as a number, so that they are compared at once.
class NameWord {
public:
    static constexpr std::size_t size = sizeof(std::uint64_t);

    constexpr NameWord() = default;
    explicit constexpr NameWord(std::string_view name) {
        if (name.size() > size) {
            return;
        }
        std::array<char, size> characters{};
        std::array<char, size> mask{};
        for (std::size_t i = 0; i < name.size(); ++i) {
            characters[i] = name[i];
            mask[i] = static_cast<char>(0xFF);
        }
        m_word = std::bit_cast<std::uint64_t>(characters);
        m_mask = std::bit_cast<std::uint64_t>(mask);
    }
    // The line has at least that size.
    static std::uint64_t beginningOf(std::string_view line) {
        std::uint64_t word = 0;
        std::memcpy(&word, line.data(), size);
        return word;
    }
    // Whether the whole name is there. False also where it is longer, or in lower case.
    bool isAt(std::uint64_t beginning) const { return (beginning & m_mask) == m_word; }

private:
    std::uint64_t m_word = 1; // without a mask it is nowhere
    std::uint64_t m_mask = 0;
};

// The names by their first two characters, which are those of few names only: every line of a
// calendar is looked up here, and most of them are of no interest.
class PropertyTable {
public:
    constexpr PropertyTable() {
        for (std::size_t i = 0; i < std::size(propertyNames); ++i) {
            std::uint8_t& first = m_first[beginningOf(propertyNames[i].name)];
            m_next[i] = first;
            m_words[i] = NameWord(propertyNames[i].name);
            first = static_cast<std::uint8_t>(i + 1);
        }
    }
    // Null where the name at the beginning of the line, up to its value, its parameters, a fold or
    // the line's end, is none of them.
    const PropertyName* find(std::string_view line) const {
        if (line.size() < 2) {
            return nullptr;
        }
        const std::size_t first = m_first[beginningOf(line)];
        return first == 0 ? nullptr : findFrom(first, line);
    }
    static constexpr bool endsName(char c) {
        return c == ':' || c == ';' || c == '\r' || c == '\n';
    }

private:
    const PropertyName* findFrom(std::size_t first, std::string_view line) const {
        if (line.size() < NameWord::size) {
            return findInAnyCase(first, line);
        }
        const std::uint64_t beginning = NameWord::beginningOf(line);
        for (std::size_t i = first; i != 0; i = m_next[i - 1]) {
            if (m_words[i - 1].isAt(beginning) && endsAt(propertyNames[i - 1].name.size(), line)) {
                return &propertyNames[i - 1];
            }
        }
        return findInAnyCase(first, line);
    }
    const PropertyName* findInAnyCase(std::size_t first, std::string_view line) const;
    static bool endsAt(std::size_t length, std::string_view line) {
        return line.size() > length ? endsName(line[length]) : line.size() == length;
    }
    // The lower five bits of each character, which are the same for both cases of a letter.
    static constexpr std::size_t beginningOf(std::string_view name) {
        const auto first = static_cast<unsigned char>(name[0]) & 0x1FU;
        const auto second = static_cast<unsigned char>(name[1]) & 0x1FU;
        return first * 32 + second;
    }
    std::array<std::uint8_t, 1024> m_first{}; // of propertyNames, from 1; 0: none
    std::array<std::uint8_t, std::size(propertyNames)> m_next{}; // likewise
    std::array<NameWord, std::size(propertyNames)> m_words{};
};

inline constexpr PropertyTable propertyTable;

// The part of a line before its value or parameters.
struct LineName {
    std::size_t length = 0;
    Property property = Property::none;
};

inline std::size_t lengthOfName(std::string_view line) {
    const auto* const end = std::find_if(line.begin(), line.end(), PropertyTable::endsName);
    return static_cast<std::size_t>(end - line.begin());
}

inline LineName nameOf(std::string_view line) {
    if (const PropertyName* const known = propertyTable.find(line)) {
        return {known->name.size(), known->property};
    }
    return {lengthOfName(line), Property::none};
}

} // namespace quorvel::icalendar
