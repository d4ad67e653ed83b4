// What the expansion of one parsed file computed and needs again in the next search: its zones (RFC
// 5545 3.6.5) and the ends of its COUNTs (RFC 5545 3.3.10). Valid as long as the parsed file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "icalendar/model/ics_file.h"
#include "icalendar/recurrence/recurrence.h"
#include "icalendar/time/zone_clock.h"

namespace quorvel::icalendar {

// Where the COUNT of a rule ends.
struct CountedRule {
    std::string zone; // the TimeZone::identifier() by whose local times it was counted
    CountEnd end;
};

// For one thread at a time.
struct ExpansionCache {
    // By the index of a zone's name: first those of IcsFile::zoneNames, then those of listedZones.
    // Null where the user's zone takes its place.
    std::vector<std::shared_ptr<ZoneClock>> zones;
    std::vector<bool> isZoneLookedUp;  // of each of these zones
    std::vector<ZoneName> listedZones; // those that only RDATE and EXDATE name
    // The zones of floating times, by the number of their VCALENDAR, as far as they were looked up.
    // Null: the user's zone.
    std::unordered_map<std::uint32_t, std::shared_ptr<ZoneClock>> floatingZones;
    std::unordered_map<std::size_t, CountedRule> countedRules; // by index of IcsFile::rules
};

} // namespace quorvel::icalendar
