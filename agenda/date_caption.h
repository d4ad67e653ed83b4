// The caption with the start of an event.
#pragma once

#include <cstdint>
#include <string>

#include "platform/date_services.h"
#include "platform/ns_date.h"

namespace quorvel::platform {
class Clock;
}

namespace quorvel {

// Whole days of 86400 seconds, cut towards zero: a day that is an hour short does not count.
std::int32_t dayOffset(platform::NSTimeInterval seconds);

// From the locale's way to write an hour; a locale that has none counts as 12-hour.
bool isTwelveHourClock(const platform::DateServices& dateServices);

// How an event that starts that many days from today is captioned.
platform::NSDateFormatter captionFormatter(std::int32_t offset, bool isAllDay,
                                           bool twelveHourClock);

std::string dateCaption(const platform::DateServices& dateServices, const platform::Clock& clock,
                        platform::NSDate date, bool isAllDay);

} // namespace quorvel
