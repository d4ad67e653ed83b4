// Which instances of a series its overrides replace, and which overrides count (RFC 5545 3.8.4.4,
// RECURRENCE-ID; 3.8.7.4, SEQUENCE).
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>

#include "icalendar/expansion/event_set.h"
#include "icalendar/expansion/series.h"

namespace quorvel::icalendar {

// Each set of overrides is examined once, however many overrides and versions of the main event
// there are. The context and the sets must outlive it. For one thread.
class OverriddenInstances {
public:
    explicit OverriddenInstances(ExpansionContext& context)
        : m_context(context) {}

    // Whether the override is the newest of those for its instant, and its main event, which may be
    // absent, has neither been cancelled nor lost the instance since.
    bool isInForce(const EventReference& reference, const OverrideSet& set);
    // Whether an override of the set replaces this start of the series.
    bool isOverridden(const Series& series, const SeriesStart& start, const OverrideSet& set);

private:
    // By the form of RECURRENCE-ID; local times and days are as in EventTime.
    struct Instances {
        std::set<std::int64_t> instants;                // seconds since 1970
        std::set<std::int64_t> floating;                // local times of the series' own clock
        std::set<std::int64_t> dates;                   // days of those that are dates
        std::set<std::int64_t> days;                    // of all
        std::map<std::int64_t, const IcsEvent*> newest; // the override of each instant
    };

    const Instances& instancesOf(const OverrideSet& set);
    const Exceptions& exceptionsOfMainEvent(const OverrideSet& set);
    bool isTakenBack(const EventReference& reference, const OverrideSet& set);

    ExpansionContext& m_context;
    std::unordered_map<const OverrideSet*, Instances> m_instances;
    std::unordered_map<const OverrideSet*, Exceptions> m_exceptions; // EXDATE of the main events
};

} // namespace quorvel::icalendar
