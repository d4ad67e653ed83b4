// The recurrence set of one event (RFC 5545 3.8.5), as far as a search needs it: its starts, and
// what takes some of them away or moves them.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "icalendar/expansion/event_clocks.h"
#include "icalendar/expansion/event_length.h"
#include "icalendar/expansion/loaded_file.h"
#include "icalendar/expansion/search_cost.h"

namespace quorvel::icalendar {

// What the parts of a series' expansion use together.
struct ExpansionContext {
    EventClocks& clocks;
    const ExpansionProblemHandler& onProblem;
    SearchCost& cost;
};

struct SeriesStart {
    EventTime time;
    std::int64_t instant = 0;          // seconds since 1970
    std::optional<EventLength> length; // its own, of a period; else the event's
};

// EXDATE and EXRULE.
struct Exceptions {
    std::set<std::int64_t> instants; // seconds since 1970
    std::set<std::int64_t> days;     // since 1970; each excludes all starts of that day

    bool contains(std::int64_t instant, const EventTime& time) const {
        return instants.count(instant) != 0 || days.count(dayOf(time.localTime)) != 0;
    }
};

// An override with RANGE=THISANDFUTURE.
struct FutureOverride {
    EventReference reference;
    std::int64_t instant = 0;   // of the instance that it overrides, in seconds since 1970
    std::int64_t localTime = 0; // of that instance, by the series' clock
};

struct Series {
    LoadedFile& file;
    const IcsEvent& event;
    ZoneClock& clock; // of its start; the user's for days
    EventLength length;
    // The local times that can meet the window, by that clock.
    std::int64_t from = 0;
    std::int64_t to = 0;
    bool hasOneRule = false;   // RRULE; of several, none counts a start that it does not give
    bool reachesStart = false; // some RRULE does not end before the start
    std::vector<SeriesStart> starts;
    std::vector<FutureOverride> futureOverrides; // by instant, the newest of equals last
    Exceptions exceptions;

    Series(ExpansionContext& context, LoadedFile& eventFile, const IcsEvent& seriesEvent)
        : file(eventFile)
        , event(seriesEvent)
        , clock(context.clocks.clockOf(eventFile, seriesEvent.start))
        , length(lengthOf(context.clocks, eventFile, seriesEvent)) {}

    void addStart(ExpansionContext& context, const EventTime& time,
                  std::optional<EventLength> ownLength) {
        starts.push_back({time, context.clocks.instantOf(file, time), ownLength});
    }
    void exclude(ExpansionContext& context, const EventTime& time) {
        if (time.kind == TimeKind::date || event.start.kind == TimeKind::date) {
            exceptions.days.insert(dayOf(time.localTime));
        } else {
            exceptions.instants.insert(context.clocks.instantOf(file, time));
        }
    }
};

} // namespace quorvel::icalendar
