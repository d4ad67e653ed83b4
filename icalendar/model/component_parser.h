// The components of an iCalendar text (RFC 5545 3.6): which one a content line belongs to, and what
// the VCALENDAR component around it states about itself (RFC 5545 3.7, RFC 7986 5).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "icalendar/model/event_parser.h"
#include "icalendar/model/ics_file_builder.h"
#include "icalendar/model/property_names.h"
#include "icalendar/model/zone_parser.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {

// Takes the content lines in order. Missing and surplus END lines are tolerated; components that
// are not used are skipped. The builder and the function must outlive it.
class ComponentParser {
public:
    ComponentParser(IcsFileBuilder& builder,
                    const std::function<bool(std::string_view)>& zoneIsKnown)
        : m_builder(builder)
        , m_event(builder, zoneIsKnown)
        , m_zone(builder, zoneIsKnown) {}

    // As behind a line BEGIN:VCALENDAR.
    void beginWithinCalendar() { m_hasCalendar = m_isCalendarOpen = true; }
    // Whether all that was taken so far has no other effect on what follows than that line.
    bool isWithinPlainCalendar() const {
        return isBetweenComponents() && m_hasCalendar && m_isCalendarOpen &&
               m_calendar == CalendarContext();
    }
    bool isBetweenComponents() const { return m_place == Place::calendar; }
    // Once the lines that another parser has taken are taken as well.
    void continueBehind(const ComponentParser& other) {
        m_calendar = other.m_calendar;
        m_isCalendarOpen = other.m_isCalendarOpen;
    }

    // The line's number counts from 1 within the file.
    void addLine(Property property, const ContentLine& content, std::size_t line);
    // Once, at the end of the text.
    IcsFile finish(std::size_t lastLine);

private:
    enum class Place { calendar, event, zone, observance, other };

    void begin(std::string_view component, std::size_t line);
    void beginCalendar();
    void end(std::string_view component);
    void abandonEvent();
    void addCalendarProperty(Property property, const ContentLine& content, std::size_t line);
    void addFloatingZone(std::string_view name, std::size_t line);

    IcsFileBuilder& m_builder;
    EventParser m_event;
    ZoneParser m_zone;
    Place m_place = Place::calendar;
    std::size_t m_nested = 0; // components within an event, or within one that is skipped
    CalendarContext m_calendar;
    bool m_hasCalendar = false;
    bool m_isCalendarOpen = false;
};

} // namespace quorvel::icalendar
