// The events of the data server's calendars, expanded by the rules that calendar files follow.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/loaded_calendar.h"
#include "freedesktop/calendars/store/calendar_expansion.h"
#include "freedesktop/dates/time_zone.h"
#include "icalendar/time/zone_clock.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop::calendars {

// What the server answered for one calendar.
struct ServerAnswer {
    std::shared_ptr<const platform::EKCalendar> calendar; // never null
    std::string displayName;                              // for problems
    std::shared_ptr<const std::string> text;              // an iCalendar; never null
};

// Belongs to the thread that made it. Caches the events of each calendar until its text changes.
class ServerCalendarEvents {
public:
    // Each problem with an event is reported once, with the calendar's display name, and only so
    // many in all.
    ServerCalendarEvents(std::shared_ptr<const TimeZone> userZone,
                         CalendarProblemHandler onProblem); // neither is null

    void setTimeZone(std::shared_ptr<const TimeZone> userZone);
    // Adds the events that match the predicate, in no particular order.
    void addEvents(const ServerAnswer& answer, const platform::EKEventPredicate& predicate,
                   platform::EKEvents& result);
    // Frees the events of the calendars for which the function returns false.
    void removeUnless(const std::function<bool(const std::string& identifier)>& isListed);

private:
    struct CachedCalendar {
        std::shared_ptr<const std::string> text;
        std::shared_ptr<const LoadedCalendar> calendar; // null before it was parsed
        icalendar::Window searched; // of what is expanded, or left for the narrow window
        icalendar::Window narrow;
        bool isNarrow = false;
        bool isExpanded = false;
        ExpandedCalendar expanded;
    };

    void parse(const ServerAnswer& answer, CachedCalendar& cached);
    void expand(const ServerAnswer& answer, const icalendar::Window& window,
                CachedCalendar& cached);
    void report(const std::string& place, const TranslatableText& what);

    std::shared_ptr<const TimeZone> m_zone;
    icalendar::ZoneClock m_userZone; // of m_zone
    icalendar::ZoneNames m_zones;
    CalendarProblemHandler m_onProblem;
    std::map<std::string, CachedCalendar> m_cached; // by the calendars' identifiers
    std::set<std::pair<std::string, std::string>> m_reported;
};

} // namespace quorvel::freedesktop::calendars
