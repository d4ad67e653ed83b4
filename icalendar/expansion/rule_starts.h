// The local times that an RRULE or EXRULE line of an event gives within its series' window (RFC
// 5545 3.3.10, 3.8.5.3).
#pragma once

#include <cstdint>
#include <vector>

#include "icalendar/expansion/series.h"

namespace quorvel::icalendar {

// Local times are seconds since 1970 as if they were UTC; sorted, by the series' clock. A rule that
// cannot be parsed, or takes too long, is reported. The line is one of the file's rules. Sets
// Series::reachesStart.
std::vector<std::int64_t> ruleStarts(ExpansionContext& context, Series& series,
                                     const RuleLine& line);

} // namespace quorvel::icalendar
