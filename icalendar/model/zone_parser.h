// One VTIMEZONE component (RFC 5545 3.6.5): from its content lines to a zone's definition in the
// file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "icalendar/model/ics_file_builder.h"
#include "icalendar/model/property_names.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {

// One zone after the other. A zone whose exact name is known needs no definition, and its own is
// skipped. The builder and the function must outlive it.
class ZoneParser {
public:
    ZoneParser(IcsFileBuilder& builder, const std::function<bool(std::string_view)>& zoneIsKnown)
        : m_builder(builder)
        , m_zoneIsKnown(zoneIsKnown) {}

    void begin();
    // TZID. The number is that of the VCALENDAR around it, from 0.
    void addZoneProperty(Property property, const ContentLine& content, std::uint32_t calendar);
    void end();

    void beginObservance(); // STANDARD or DAYLIGHT
    void addObservanceProperty(Property property, const ContentLine& content);
    void endObservance();

private:
    void addDates(std::string_view list);

    IcsFileBuilder& m_builder;
    const std::function<bool(std::string_view)>& m_zoneIsKnown;
    ZoneDefinition m_zone;
    bool m_isWanted = false;
    ZoneObservance m_observance;
    bool m_observanceHasStart = false;
    bool m_observanceHasOffset = false;
};

} // namespace quorvel::icalendar
