// The bounds of a calendar day, in the user's calendar and time zone.
#pragma once

#include "platform/ns_date.h"

namespace quorvel::platform {
class DateServices;
}

namespace quorvel {

// 00:00:00 of the date's day.
platform::NSDate startOfDay(const platform::DateServices& dateServices, platform::NSDate date);

// 23:59:59 of the date's day.
platform::NSDate lastSecondOfDay(const platform::DateServices& dateServices, platform::NSDate date);

} // namespace quorvel
