// From the events of a file to the occurrences of a window: rules, dates, exceptions and overrides
// put together (RFC 5545 3.8.5, 3.8.4.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "icalendar/expansion/event_set.h"
#include "icalendar/expansion/loaded_file.h"
#include "icalendar/expansion/search_cost.h"
#include "icalendar/model/ics_file.h"
#include "icalendar/recurrence/recurrence.h"
#include "icalendar/time/zone_clock.h"

namespace quorvel::icalendar {

struct Occurrence {
    const LoadedFile* file = nullptr;
    const IcsEvent* event = nullptr; // the main event, or the override in its place
    std::int64_t start = 0;          // seconds since 1970
    std::int64_t end = 0;
    bool isAllDay = false;
    std::optional<std::int64_t> recurrence; // the instant that the rule meant it for
};

// Both ends in seconds since 1970.
struct Window {
    double from = 0;
    double to = 0;
    bool operator==(const Window&) const = default;
};

// Ends after the window's beginning, or starts at it; and starts at or before the window's end.
bool belongsTo(const Window& window, std::int64_t start, std::int64_t end);

using ExpansionProblemHandler =
    std::function<void(LoadedFile& file, std::size_t line, std::string what)>;

// Expands one event after the other for one search. The cost, the clocks, the report, the files and
// the overrides must outlive it.
class Expander {
public:
    Expander(Window window, ZoneClock& userZone, ZoneNames& names,
             const ExpansionProblemHandler& report, SearchCost& cost);

    // By the days that an event can touch.
    bool mayMeetWindow(std::int32_t firstDay, std::int32_t lastDay) const {
        return firstDay <= m_lastDay && lastDay >= m_firstDay;
    }
    // Adds what the event comes to within the window. Overridden occurrences are left to their
    // overrides, cancelled ones are left out.
    void expand(const EventReference& reference, const Overrides& overrides,
                std::vector<Occurrence>& result);

private:
    struct Length {
        std::int64_t days = 0; // nominal
        std::int64_t seconds = 0;
    };
    struct Start {
        EventTime time;
        std::int64_t instant = 0;
        std::optional<Length> length; // its own, of a period
    };
    // What takes instances away.
    struct Exceptions {
        std::set<std::int64_t> instants;
        std::set<std::int64_t> days;
    };
    // What the overrides of one UID take the place of, by the form of their RECURRENCE-ID.
    struct Overridden {
        std::set<std::int64_t> instants;
        std::set<std::int64_t> floating;                // local times; they are the series' own
        std::set<std::int64_t> dates;                   // days of those that are dates
        std::set<std::int64_t> days;                    // of all
        std::map<std::int64_t, const IcsEvent*> newest; // override of each instant
    };
    // An override that holds for what follows as well.
    struct FutureOverride {
        EventReference reference;
        std::int64_t instant = 0;   // of the instance that it overrides
        std::int64_t localTime = 0; // of that instance, by the series' clock
    };
    struct Series {
        LoadedFile& file;
        const IcsEvent& event;
        ZoneClock& clock; // of its start; the user's for days
        Length length;
        std::int64_t from = 0; // the local times that can meet the window
        std::int64_t to = 0;
        bool hasOneRule = false;   // RRULE; of several, none counts a start that it does not give
        bool reachesStart = false; // by a rule that does not end before it
        std::vector<Start> starts;
        std::vector<FutureOverride> futureOverrides; // by instant, the newest of equals last
        Exceptions exceptions;
    };

    struct LocalWindow {
        std::int64_t from = 0;
        std::int64_t to = 0;
    };

    Series seriesOf(LoadedFile& file, const IcsEvent& event, bool mayShift);
    const LocalWindow& localWindow(const ZoneClock& clock);
    ZoneClock& clockOf(LoadedFile& file, const EventTime& time);
    ZoneClock& floatingClock(LoadedFile& file, std::uint32_t calendar);
    bool isNewest(const EventReference& reference, const OverrideSet& set);
    bool isTakenBack(const EventReference& reference, const OverrideSet& set);
    const Overridden& overridden(const OverrideSet& set);
    const Exceptions& exceptionsOf(const OverrideSet& set);
    std::shared_ptr<ZoneClock> findZone(LoadedFile& file, const ZoneName& name, std::size_t line);
    std::int64_t instantOf(LoadedFile& file, const EventTime& time);
    std::int64_t endOf(LoadedFile& file, const EventTime& start, std::int64_t startInstant,
                       const Length& length);
    Length lengthOf(LoadedFile& file, const IcsEvent& event);
    void emit(LoadedFile& file, const IcsEvent& event, const EventTime& start, const Length& length,
              std::optional<std::int64_t> recurrence, std::vector<Occurrence>& result);
    void emitSeries(Series& series, const OverrideSet* overrides, std::vector<Occurrence>& result);
    void expandSeries(LoadedFile& file, const IcsEvent& event, const OverrideSet* overrides,
                      std::vector<Occurrence>& result);
    void addStart(Series& series, const EventTime& time, std::optional<Length> length);
    std::vector<std::int64_t> ruleStarts(Series& series, const RuleLine& line);
    CountEnd countEnd(Series& series, const RuleLine& line, const RecurrenceRequest& request);
    void addDates(Series& series, const RuleLine& rule);
    void excludeDates(Series& series, const RuleLine& rule);
    void excludeRule(Series& series, const RuleLine& rule);
    bool isOverridden(Series& series, const Start& start, const OverrideSet& overrides);
    void exclude(Series& series, LoadedFile& file, EventTime time);
    EventTime listedTime(Series& series, const RuleLine& rule, const TimeValue& value);
    FutureOverride futureOverride(Series& series, const EventReference& reference);
    void addFutureOverrides(Series& series, const OverrideSet& overrides);
    EventTime movedStart(Series& series, const Start& start, const FutureOverride& future);
    EventTime overriddenTime(const Series& series, const EventReference& reference);

    Window m_window;
    std::unordered_map<const ZoneClock*, LocalWindow>
        m_localWindows; // of the window, and a little more
    std::unordered_map<const OverrideSet*, Overridden> m_overridden;
    std::unordered_map<const OverrideSet*, Exceptions> m_exceptions; // of the main events
    std::int64_t m_firstDay = 0;
    std::int64_t m_lastDay = 0;
    ZoneClock& m_userZone;
    ZoneNames& m_names;
    std::shared_ptr<ZoneClock> m_utc;
    const ExpansionProblemHandler& m_report;
    SearchCost& m_cost;
};

} // namespace quorvel::icalendar
