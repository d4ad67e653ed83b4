// The calendars that come with the program, dated around now.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/ns_date.h"

namespace quorvel::icalendar {
class TimeZone;
} // namespace quorvel::icalendar

namespace quorvel::app {

struct SampleCalendar {
    std::string name; // of the file, without ".ics"
    std::string text; // the content of a .ics file
};

// Replaces the placeholders of a template: "@+3@" and "@-2@" by the date that many days from today,
// as YYYYMMDD; "@now+50m@" and "@now-25m@" by the local time that many minutes from now, rounded
// down to a quarter of an hour, as YYYYMMDDTHHMMSS.
std::string filledTemplate(std::string_view text, platform::NSDate now,
                           const icalendar::TimeZone& zone);

// The filled templates in a folder, sorted by name. The error is a file that cannot be read, or a
// folder without templates.
Result<std::vector<SampleCalendar>> readSampleCalendars(const std::string& folder,
                                                        platform::NSDate now,
                                                        const icalendar::TimeZone& zone);

} // namespace quorvel::app
