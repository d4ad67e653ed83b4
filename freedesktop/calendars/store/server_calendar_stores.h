// The user's calendars in Evolution Data Server.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// What the source of calendars that stands for the server is called.
inline constexpr std::string_view dataServerSourceName = "eds:";
inline constexpr std::string_view dataServerName = "Evolution Data Server";

bool isDataServer(const CalendarSource& source);

// How long a presentation waits for the server in all, in seconds.
struct DataServerWaits {
    double first = 3;
    double later = 0.5;
};

// The server's own events are put together by the rules that the calendar files follow.
//
// A calendar's identifier is the server's; ':', '/', '%' and control characters are written "%3A".
// Its colour: the server's, else one of the files' palette. Calendars come by title.
//
// A store waits for the server no longer than it may: what has not answered by then is named, and
// left out. What is amiss is told once, until it is right again. For one thread.
class ServerCalendarStores final : public platform::CalendarStores {
public:
    ServerCalendarStores(std::unique_ptr<eds::DataServer> server,
                         std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem,
                         DataServerWaits waits = {});
    ~ServerCalendarStores() override;
    ServerCalendarStores(const ServerCalendarStores&) = delete;
    ServerCalendarStores& operator=(const ServerCalendarStores&) = delete;

    // Whether nothing is amiss where there is no server.
    void setOptional(bool isOptional);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone); // for the stores made from now on

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // Whether the last store had a calendar, and not all that it was asked for were unreadable.
    bool anyReadable() const;
    bool hasCalendar(std::string_view identifier) const; // of the last store
    // The identifiers of the calendars that the desktop's calendar application has switched off, as
    // of the last store.
    std::vector<std::string> deselectedCalendars() const;
    // See eds::DataServer.
    void follow(std::function<void()> changed);

private:
    class State;
    class Store;
    std::shared_ptr<State> m_state;
};

} // namespace quorvel::freedesktop
