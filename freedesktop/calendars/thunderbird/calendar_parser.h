// Parses the events of one calendar as they come from a database.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "freedesktop/calendars/thunderbird/event_row.h"
#include "freedesktop/calendars/thunderbird/event_zones.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::thunderbird {

// For one thread.
class CalendarParser {
public:
    // See IcsFileParser.
    CalendarParser(const std::function<bool(std::string_view)>& zoneIsKnown, std::size_t mostBytes);

    void add(const EventRow& row);
    // Once. The lines of the result are unknown: no user has seen the text.
    icalendar::IcsFile finish();

private:
    void append(std::string_view text);

    icalendar::IcsFileParser m_parser;
    EventZones m_zones;
    std::string m_text; // not parsed yet
};

} // namespace quorvel::freedesktop::thunderbird
