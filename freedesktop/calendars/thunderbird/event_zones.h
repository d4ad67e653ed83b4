// The time zones of stored events.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "icalendar/time/time_zone.h"

namespace quorvel::freedesktop::thunderbird {

struct EventZone {
    enum class Kind { utc, floating, named };
    Kind kind = Kind::utc;
    std::string name;                                // where named: as TZID spells it
    std::shared_ptr<const icalendar::TimeZone> zone; // where named: not null
};

// The zones of one calendar. For one thread.
class EventZones {
public:
    // `stored` is StoredTime::zone. A zone that is not known is UTC, so that the instant is right.
    const EventZone& zoneOf(const std::string& stored);
    // The definitions that the zones found since the last call need: whole VTIMEZONEs.
    std::string takeDefinitions();

private:
    EventZone find(std::string_view stored);
    EventZone define(std::string_view definition);

    std::map<std::string, EventZone, std::less<>> m_zones; // by what is stored
    std::set<std::string, std::less<>> m_defined;          // names
    std::string m_definitions;
};

} // namespace quorvel::freedesktop::thunderbird
