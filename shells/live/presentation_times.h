// The instants at which a widget that stays is out of date.
#pragma once

#include <vector>

#include "platform/date_services.h"
#include "platform/ns_date.h"
#include "shells/widget/row_descriptions.h"

namespace quorvel::shells {

// The first instant of the day after that of `now`, also where its midnight does not exist or comes
// twice.
platform::NSDate nextMidnight(const platform::DateServices& dateServices, platform::NSDate now);

// The soonest instant after `now` at which the rows may be others: midnight, or the start or end of
// one of these. A row of whole days begins and ends with a day.
platform::NSDate nextPresentation(const platform::DateServices& dateServices, platform::NSDate now,
                                  const std::vector<RowDescription>& rows);

} // namespace quorvel::shells
