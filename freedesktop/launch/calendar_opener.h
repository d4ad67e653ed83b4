// Shows an event or a day in the calendar application that is installed.
#pragma once

#include <string>

#include "freedesktop/launch/calendar_link.h"

namespace quorvel::freedesktop {

struct OpeningOutcome {
    bool isOpened = false;
    std::string problem; // "what is wrong: what to do"; empty where it was opened
};

// The user's own choice for calendars where it is one that can be told what to show, else one of
// those where it is installed, else his own choice as it is; never this program itself. Runs the
// default main context until the application has answered, each step for a few seconds at most.
OpeningOutcome openInCalendarApplication(const CalendarLink& link);

} // namespace quorvel::freedesktop
