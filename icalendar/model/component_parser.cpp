#include "icalendar/model/component_parser.h"

#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {

void ComponentParser::addLine(Property property, const ContentLine& content, std::size_t line) {
    if (property == Property::begin) {
        begin(trimmed(content.value), line);
    } else if (property == Property::end) {
        end(trimmed(content.value));
    } else if (m_place == Place::event && m_nested == 0) {
        m_event.addProperty(property, content, line);
    } else if (m_place == Place::zone) {
        m_zone.addZoneProperty(property, content, m_calendar.number);
    } else if (m_place == Place::observance) {
        m_zone.addObservanceProperty(property, content);
    } else if (m_place == Place::calendar) {
        addCalendarProperty(property, content, line);
    }
}

void ComponentParser::begin(std::string_view component, std::size_t line) {
    if (equalsIgnoringCase(component, "VCALENDAR")) {
        beginCalendar();
    } else if (equalsIgnoringCase(component, "VEVENT")) {
        abandonEvent();
        m_event.begin(m_calendar, line);
        m_place = Place::event;
        m_nested = 0;
    } else if (m_place == Place::event || m_place == Place::other) {
        ++m_nested;
    } else if (equalsIgnoringCase(component, "VTIMEZONE")) {
        m_zone.begin();
        m_place = Place::zone;
    } else if (m_place == Place::zone && (equalsIgnoringCase(component, "STANDARD") ||
                                          equalsIgnoringCase(component, "DAYLIGHT"))) {
        m_zone.beginObservance();
        m_place = Place::observance;
    } else {
        m_place = Place::other;
        m_nested = 0;
    }
}

void ComponentParser::beginCalendar() {
    abandonEvent();
    const std::uint32_t number = m_calendar.number + (m_hasCalendar ? 1 : 0);
    m_calendar = {number, false, false};
    m_hasCalendar = true;
    m_isCalendarOpen = true;
    m_place = Place::calendar;
    m_nested = 0;
}

void ComponentParser::end(std::string_view component) {
    if (equalsIgnoringCase(component, "VEVENT")) {
        if (m_place == Place::event) {
            m_event.end();
            m_place = Place::calendar;
            m_nested = 0;
        }
    } else if (equalsIgnoringCase(component, "VCALENDAR")) {
        abandonEvent();
        m_isCalendarOpen = false;
        m_place = Place::calendar;
        m_nested = 0;
    } else if (equalsIgnoringCase(component, "VTIMEZONE")) {
        if (m_place == Place::zone || m_place == Place::observance) {
            m_zone.end();
            m_place = Place::calendar;
        }
    } else if (m_place == Place::observance) {
        m_zone.endObservance();
        m_place = Place::zone;
    } else if (m_nested > 0) {
        --m_nested;
    } else if (m_place == Place::other) {
        m_place = Place::calendar;
    }
}

void ComponentParser::abandonEvent() {
    if (m_place == Place::event) {
        m_event.abandon();
        m_place = Place::calendar;
    }
}

void ComponentParser::addCalendarProperty(Property property, const ContentLine& content,
                                          std::size_t line) {
    IcsFile& file = m_builder.file();
    const std::string_view value = trimmed(content.value);
    if (property == Property::version) {
        m_calendar.isVCalendar1 = value == "1.0";
    } else if (property == Property::method) {
        m_calendar.cancels = equalsIgnoringCase(value, "CANCEL");
    } else if (property == Property::calendarZone) {
        addFloatingZone(value, line);
    } else if (property == Property::calendarName && !file.calendarName) {
        file.calendarName = parseText(content.value);
    } else if (property == Property::calendarColour && !file.calendarColour) {
        file.calendarColour = validUtf8(value);
    }
}

void ComponentParser::addFloatingZone(std::string_view name, std::size_t line) {
    const bool isFirst = m_builder.file().floatingZoneOf(m_calendar.number) == nullptr;
    if (!name.empty() && isFirst && !m_builder.isFull()) {
        m_builder.addFloatingZone({{parseText(name), m_calendar.number}, line});
    }
}

IcsFile ComponentParser::finish(std::size_t lastLine) {
    const bool endsInEvent = m_place == Place::event;
    abandonEvent();
    if (m_isCalendarOpen && !endsInEvent && !m_builder.file().isTruncated) {
        m_builder.addProblem(lastLine, translatable("the file ends before END:VCALENDAR"));
    }
    return m_builder.finish(m_hasCalendar, lastLine);
}

} // namespace quorvel::icalendar
