// What a host shows where there are no rows, or not all of them: the wording, without the drawing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "platform/ns_date.h"

namespace quorvel::platform {
class DateServices;
} // namespace quorvel::platform

namespace quorvel::shells {

class HostedWidget;

// What is known about the calendars after a presentation.
struct CalendarState {
    bool hasReadable = true; // at least one calendar
    bool isLate = false;     // not everything was read in time; it will be presented again
    std::vector<freedesktop::CalendarProblem> unreadable;
};

// What could not be read, in two short lines.
struct ProblemNotice {
    std::string name;   // "work.ics", "work.ics and 2 more"
    std::string reason; // of the first one: "cannot be read: Permission denied"
    bool operator==(const ProblemNotice&) const = default;
};

struct Notices {
    std::optional<std::string> line; // in place of the rows
    std::optional<ProblemNotice> problem;
    bool operator==(const Notices&) const = default;
};

// For screen readers; empty without notices.
std::string textOf(const Notices& notices);

// Call it after a presentation.
Notices noticesOf(HostedWidget& widget, const CalendarState& calendars,
                  const platform::DateServices& dateServices, platform::NSDate now);

// "Nothing until Wednesday", the last of the days that the setting asks for.
std::string nothingPlannedText(const platform::DateServices& dateServices, platform::NSDate now,
                               std::int64_t daysToDisplay);
std::string noCalendarsText(const CalendarState& calendars);
// Absent where everything could be read.
std::optional<ProblemNotice>
unreadableNotice(const std::vector<freedesktop::CalendarProblem>& unreadable);

} // namespace quorvel::shells
