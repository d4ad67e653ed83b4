// The user's calendars in Evolution Data Server, behind the platform's interface.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/store/live_calendar_stores.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// The name of the source of calendars that stands for the server.
inline constexpr std::string_view dataServerSourceName = "eds:";
inline constexpr std::string_view dataServerName = "Evolution Data Server";

bool isDataServer(const CalendarSource& source);

// A calendar's identifier is the server's, in which ':', '/', '%' and control characters are
// written as "%3A". Its colour is the server's, else one of the palette of files. Calendars are
// sorted by title.
//
// A calendar that does not answer in time is reported and left out. A problem is reported again
// only after it was solved. Belongs to the thread that made it, as do its stores.
class ServerCalendarStores final : public LiveCalendarStores {
public:
    // The server and the zone are not null; the handler may be.
    ServerCalendarStores(std::unique_ptr<eds::DataServer> server,
                         std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem,
                         DataServerWaits waits = {});
    ~ServerCalendarStores() override;
    ServerCalendarStores(const ServerCalendarStores&) = delete;
    ServerCalendarStores& operator=(const ServerCalendarStores&) = delete;

    void setOptional(bool isOptional) override;
    void setTimeZone(std::shared_ptr<const TimeZone> userZone) override;
    // See eds::DataServer::setChangedHandler().
    void setChangedHandler(std::function<void()> onChanged) override;

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // Whether the last store had a calendar, and could read at least one of those that it was asked
    // for.
    bool anyReadable() const override;
    bool hasCalendar(std::string_view identifier) const override;  // in the last store
    std::vector<std::string> deselectedCalendars() const override; // of the last store's
    // About the last store.
    std::vector<CalendarProblem> unreadable() const override;
    bool isLate() const override;

private:
    class State;
    class Store;
    std::shared_ptr<State> m_state;
};

} // namespace quorvel::freedesktop
