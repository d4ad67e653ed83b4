// When the rows of a widget go out of date.
#pragma once

#include <vector>

#include "platform/date_services.h"
#include "platform/ns_date.h"
#include "shells/widget/row_descriptions.h"

namespace quorvel::shells {

// The first instant of the next local day. Where clock changes skip midnight, that is a later time;
// where midnight occurs twice, it is the first of the two.
platform::NSDate nextMidnight(const platform::DateServices& dateServices, platform::NSDate now);

// The earliest instant after `now` at which the rows may change: midnight, or the start or end of a
// row. All-day rows change at midnight only.
platform::NSDate nextPresentation(const platform::DateServices& dateServices, platform::NSDate now,
                                  const std::vector<RowDescription>& rows);

} // namespace quorvel::shells
