// The calendars that come with the program, dated around now.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ns_date.h"

namespace quorvel::icalendar {
class TimeZone;
} // namespace quorvel::icalendar

namespace quorvel::app {

struct SampleCalendar {
    std::string name; // the file's, without ".ics"
    std::string text; // of a .ics file, ready to be read
};

// Fills in the placeholders of a template. "@+3@" and "@-2@" become the date so many days from
// today, as YYYYMMDD; "@now+50m@" and "@now-25m@" the local time so many minutes from now, taken
// down to the quarter of an hour, as YYYYMMDDTHHMMSS. All else stays as it is.
std::string filledTemplate(std::string_view text, platform::NSDate now,
                           const icalendar::TimeZone& zone);

// The filled templates of a folder, by name. Throws std::runtime_error where there are none.
std::vector<SampleCalendar> readSampleCalendars(const std::string& folder, platform::NSDate now,
                                                const icalendar::TimeZone& zone);

} // namespace quorvel::app
