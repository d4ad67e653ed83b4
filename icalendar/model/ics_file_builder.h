// A parsed iCalendar text (RFC 5545 3.4) while its lines are still being parsed: what the parsers
// of events, zones and calendars add to, within the memory that the caller allows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// For one thread.
class IcsFileBuilder {
public:
    static constexpr std::size_t mostProblems = 50; // further ones are counted only

    explicit IcsFileBuilder(std::size_t mostBytes)
        : m_mostBytes(mostBytes) {}

    const IcsFile& file() const { return m_file; }
    IcsFile& file() { return m_file; }

    // Whether the file takes more memory than allowed; nothing more is then to be added.
    bool isFull();
    // Reserves memory for this many times what is stored already.
    void reserveMore(double times);

    Slice appendText(std::string_view text);
    // Of IcsFile::zoneNames; a name is added where none of the latest is the same.
    std::uint32_t zoneIndex(std::string_view name, std::uint32_t calendar);
    // Marks the file as truncated where it is full then.
    void addEvent(const IcsEvent& event);
    void addZone(ZoneDefinition zone);
    void addFloatingZone(FloatingZone zone);
    // The line counts from 1; 0: unknown.
    void addProblem(std::size_t line, TranslatableText what);
    // So that observances that are not in the file yet count too.
    void countZoneBytes(std::size_t bytes) { m_zoneBytes += bytes; }

    // Adds what was built of the text that follows behind so many lines. False, and nothing is
    // added, where the result could be another one than that of building all of it here.
    bool append(const IcsFileBuilder& rest, std::size_t lines);

    // Once, at the end of the text; the last line's number is 0 for an empty text.
    IcsFile finish(bool hasCalendar, std::size_t lastLine);

private:
    bool mayAppend(const IcsFileBuilder& rest) const;
    void appendEvents(const IcsFile& rest, std::size_t lines);

    std::size_t m_mostBytes;
    std::size_t m_mostUsed = 0; // of memory, whenever it was asked whether the file is full
    IcsFile m_file;
    std::size_t m_overrides = 0;
    std::size_t m_zoneBytes = 0; // estimated
    std::size_t m_moreProblems = 0;
};

} // namespace quorvel::icalendar
