// Overrides with RANGE=THISANDFUTURE, which move what follows their own instance as well (RFC 5545
// 3.2.13).
#pragma once

#include <vector>

#include "icalendar/expansion/event_set.h"
#include "icalendar/expansion/series.h"

namespace quorvel::icalendar {

// Of a series, by instant, the newest of equals last.
std::vector<FutureOverride> futureOverridesOf(ExpansionContext& context, const Series& series,
                                              const OverrideSet& overrides);

// Where the override moves a later start of the series: by as much local time as its own instance.
EventTime movedStart(const Series& series, const SeriesStart& start, const FutureOverride& future);

} // namespace quorvel::icalendar
