// Stores of calendars that change without a file: what they offer beside the platform's interface.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// How long the making and the questions of one store wait for the server in all, in seconds: those
// of the first store, and those of each later one. 0: not at all.
struct DataServerWaits {
    double first = 3;
    double later = 0.5;
};

class LiveCalendarStores : public platform::CalendarStores {
public:
    // Whether a missing server is no problem.
    virtual void setOptional(bool isOptional) = 0;
    // For the stores made from now on. Never null.
    virtual void setTimeZone(std::shared_ptr<const TimeZone> userZone) = 0;
    // Called on any thread when a new store would have other calendars or events. Null: no handler.
    virtual void setChangedHandler(std::function<void()> onChanged) = 0;

    // Whether there are calendars, and at least one of them could be read.
    virtual bool anyReadable() const = 0;
    virtual bool hasCalendar(std::string_view identifier) const = 0;
    // The identifiers of the calendars that the desktop's calendar application does not show.
    virtual std::vector<std::string> deselectedCalendars() const = 0;
    // The server and those of the calendars that could not be read, with the reasons. Also those
    // that were reported before.
    virtual std::vector<CalendarProblem> unreadable() const = 0;
    // Whether not everything was known in time: a new store may have more.
    virtual bool isLate() const = 0;
};

} // namespace quorvel::freedesktop
