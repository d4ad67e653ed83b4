// From the events of a calendar to the occurrences of a window: rules, dates, exceptions and
// overrides together (RFC 5545 3.8.5, 3.8.4.4).
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "icalendar/expansion/event_clocks.h"
#include "icalendar/expansion/event_set.h"
#include "icalendar/expansion/expansion_problem.h"
#include "icalendar/expansion/occurrence.h"
#include "icalendar/expansion/overridden_instances.h"
#include "icalendar/expansion/search_cost.h"
#include "icalendar/expansion/series.h"

namespace quorvel::icalendar {

// Expands one event after the other for one search. Stores in the files' caches what the next
// search needs again. The arguments but the window, the files and the overrides must outlive it.
// For one thread.
class Expander {
public:
    Expander(Window window, ZoneClock& userZone, ZoneNames& names,
             const ExpansionProblemHandler& onProblem, SearchCost& cost);
    Expander(const Expander&) = delete;
    Expander& operator=(const Expander&) = delete;

    // By the days that an event can touch, since 1970. False: it has no occurrence in the window.
    bool mayMeetWindow(std::int32_t firstDay, std::int32_t lastDay) const {
        return firstDay <= m_lastDay && lastDay >= m_firstDay;
    }
    // Appends the event's occurrences in the window. The overrides are those of its calendar: an
    // overridden instance is the override's own, and cancelled ones are left out.
    void expand(const EventReference& reference, const Overrides& overrides,
                std::vector<Occurrence>& result);

private:
    struct LocalWindow {
        std::int64_t from = 0;
        std::int64_t to = 0;
    };

    void expandSeries(const EventReference& reference, const OverrideSet* overrides,
                      std::vector<Occurrence>& result);
    void setWindow(Series& series, bool mayShift);
    void addLine(Series& series, const RuleLine& line);
    void emitSeries(Series& series, const OverrideSet* overrides, std::vector<Occurrence>& result);
    void emitStart(const Series& series, const SeriesStart& start,
                   std::optional<std::int64_t> recurrence, std::vector<Occurrence>& result);
    void emit(const EventReference& reference, const EventTime& start, const EventLength& length,
              std::optional<std::int64_t> recurrence, std::vector<Occurrence>& result);
    const LocalWindow& localWindow(const ZoneClock& clock);

    Window m_window;
    std::int64_t m_firstDay; // of the window, since 1970
    std::int64_t m_lastDay;
    EventClocks m_clocks;
    ExpansionContext m_context;
    OverriddenInstances m_overridden;
    // The window in local times of each clock, and a little more.
    std::unordered_map<const ZoneClock*, LocalWindow> m_localWindows;
};

} // namespace quorvel::icalendar
