// The clock that an event's times are read by (RFC 5545 3.2.19, 3.3.5): that of the zone that its
// TZID names, of the calendar's own zone, or the user's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "icalendar/expansion/expansion_problem.h"
#include "icalendar/expansion/loaded_file.h"
#include "icalendar/time/zone_clock.h"

namespace quorvel::icalendar {

// Looks each zone of a file up once and stores its clock in the file's cache; reports a zone that
// is unknown, or known by its offset alone. The arguments must outlive it. For one thread.
class EventClocks {
public:
    EventClocks(ZoneClock& userZone, ZoneNames& names, const ExpansionProblemHandler& onProblem);

    ZoneClock& userZone() const { return m_userZone; }
    // The clock of a date, and of a time in an unknown zone, is the user's.
    ZoneClock& clockOf(LoadedFile& file, const EventTime& time);
    // In seconds since 1970. A date is its midnight in the user's zone.
    std::int64_t instantOf(LoadedFile& file, const EventTime& time);

private:
    ZoneClock& floatingClock(LoadedFile& file, std::uint32_t calendar);
    std::shared_ptr<ZoneClock> findZone(LoadedFile& file, const ZoneName& name, std::size_t line);

    ZoneClock& m_userZone;
    ZoneNames& m_names;
    std::shared_ptr<ZoneClock> m_utc;
    const ExpansionProblemHandler& m_onProblem;
};

} // namespace quorvel::icalendar
