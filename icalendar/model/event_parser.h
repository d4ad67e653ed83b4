// One VEVENT component (RFC 5545 3.6.1; vCalendar 1.0): from its content lines to an event of the
// file, or to the reason why it is left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "icalendar/model/ics_file_builder.h"
#include "icalendar/model/property_names.h"
#include "icalendar/text/content_lines.h"
#include "icalendar/text/latest_few.h"

namespace quorvel::icalendar {

// The VCALENDAR component around an event, as far as it was parsed.
struct CalendarContext {
    std::uint32_t number = 0;  // counts from 0 within the file
    bool cancels = false;      // METHOD:CANCEL, of all its events
    bool isVCalendar1 = false; // vCalendar 1.0
    bool operator==(const CalendarContext&) const = default;
};

// One event after the other. The builder and the function must outlive it.
class EventParser {
public:
    // The function returns whether a time zone is known by that exact name.
    EventParser(IcsFileBuilder& builder, const std::function<bool(std::string_view)>& zoneIsKnown)
        : m_builder(builder)
        , m_zoneIsKnown(zoneIsKnown) {}

    // Lines are numbers from 1 within the file.
    void begin(const CalendarContext& calendar, std::size_t line);
    void addProperty(Property property, const ContentLine& content, std::size_t line);
    // Adds the event to the file, or reports why it is left out.
    void end();
    // In place of end() where END:VEVENT is missing: the event is left out.
    void abandon();

private:
    struct UnusableEnd {
        std::size_t line;
        const char* property; // DTEND or DURATION
        TranslatableText value;
    };
    // One that was looked up.
    struct NamedZone {
        std::string parameters;
        std::uint32_t calendar = 0;
        std::uint32_t index = 0; // of IcsFile::zoneNames
        bool isKnown = false;    // by that exact name
    };

    void addDefiningTime(Property property, const ContentLine& content, std::size_t line);
    void addEnd(const ContentLine& content, std::size_t line);
    void addDuration(const ContentLine& content, std::size_t line);
    void addRule(RuleKind kind, const ContentLine& content, std::size_t line);
    Slice appendDecodedText(const ContentLine& content, std::size_t line);
    EventTime eventTime(const TimeValue& value, const ContentLine& content);
    const NamedZone* findZone(std::string_view parameters);
    bool isKnown(std::uint32_t zone);
    void leaveOut(std::size_t line, TranslatableText why);
    void noteUnusableEnd(const char* property, std::string_view value, std::size_t line);
    void reportUnusableEnds();
    bool endsBeforeItsStart() const;
    std::string generatedUid() const;
    void removeFromFile();

    IcsFileBuilder& m_builder;
    const std::function<bool(std::string_view)>& m_zoneIsKnown;
    CalendarContext m_calendar;
    IcsEvent m_event;
    std::size_t m_textBefore = 0; // the size of the file's text before the event
    bool m_hasStart = false;
    bool m_hasUid = false;
    bool m_isLeftOut = false;
    std::vector<UnusableEnd> m_unusableEnds;
    // The latest that were looked up, as nearly all times of a calendar are in a few zones.
    LatestFew<NamedZone> m_latestZones;
    std::vector<bool> m_knownZones; // of IcsFile::zoneNames, those that were asked for
    bool m_hasKnownZones = false;   // all times of the event are dates, in UTC or in zones known
};

} // namespace quorvel::icalendar
