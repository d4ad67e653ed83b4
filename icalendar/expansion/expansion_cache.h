// What the expansion of one parsed file has worked out and needs again in the next search. Whoever
// holds the parsed file holds this beside it, and discards both together.
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

// Where the COUNT of a rule ends (RFC 5545 3.3.10), so that it is counted once only.
struct CountedRule {
    std::string zone; // the identifier of the zone whose local times were counted
    CountEnd end;
};

// Not for several threads at once.
struct ExpansionCache {
    // By the index of a zone's name: first those of IcsFile::zoneNames, then those of listedZones.
    // Null where the user's zone takes its place.
    std::vector<std::shared_ptr<ZoneClock>> zones;
    std::vector<bool> isZoneLookedUp;  // of each of these zones
    std::vector<ZoneName> listedZones; // those that RDATE and EXDATE alone name
    // By calendar, those that have been looked up; null: the user's zone.
    std::unordered_map<std::uint32_t, std::shared_ptr<ZoneClock>> floatingZones;
    std::unordered_map<std::size_t, CountedRule> countedRules; // by index of IcsFile::rules
};

} // namespace quorvel::icalendar
