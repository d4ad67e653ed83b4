// All calendars of the user, in files, in Thunderbird and on the data server, as one set of stores.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/store/combined_calendar_stores.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/calendars/store/live_calendar_stores.h"
#include "freedesktop/dates/time_zone.h"
#include "freedesktop/desktop/desktop.h"
#include "freedesktop/session/watched_path.h"
#include "freedesktop/subscribed_calendars.h"

namespace quorvel::freedesktop {

class ThreadSignal;

struct UserCalendarOptions {
    std::shared_ptr<const TimeZone> timeZone; // never null
    CalendarProblemHandler problemHandler;
    std::string dataServerModule;     // the file that wraps the data server's library
    std::shared_ptr<Desktop> desktop; // see FreedesktopOptions
    DataServerWaits dataServerWaits;
    // See FreedesktopOptions.
    std::optional<DataServerWaits> backgroundServerWaits;
    SubscriptionOptions subscriptions;
};

// For one thread.
class UserCalendars final : private platform::CalendarStores {
public:
    explicit UserCalendars(UserCalendarOptions options);
    ~UserCalendars() override;
    UserCalendars(const UserCalendars&) = delete;
    UserCalendars& operator=(const UserCalendars&) = delete;

    // Each event store has the subscriptions of the moment.
    platform::CalendarStores& stores() { return *this; }

    // The data server's calendars precede those of files where it is the first source, else follow
    // them.
    void setSources(std::vector<CalendarSource> sources);
    // See SubscribedCalendars::setListFolder().
    void setSubscriptionListFolder(const std::string& folder);
    void setTimeZone(const std::shared_ptr<const TimeZone>& zone); // never null
    // See FileCalendarStores::setIndex(). Call it before the first event store is created.
    void setIndex(const std::string& folder, std::function<void(const std::string&)> onProblem);
    void setWaits(CalendarWaits waits);
    // See FileCalendarStores::beginReading(). The data server is always contacted from the
    // beginning.
    void beginReading();
    // The handler is called when the data server's calendars change, and when files are available
    // that were not read within the wait; on the default main context of the thread that sets it.
    // Null: none.
    void setChangedHandler(std::function<void()> onChanged);

    // About the latest event store; of a server that is read in the background, about the latest
    // that is known.
    bool anyReadable() const;
    // See FreedesktopPlatform::unreadableCalendars().
    std::vector<CalendarProblem> unreadable() const;
    bool isLate() const;
    std::string storeOf(std::string_view identifier) const;
    std::vector<std::string> deselected() const; // in the application that has the calendar

    // The files and folders in which a change may change the calendars; without the copies of
    // subscriptions.
    std::vector<WatchedPath> watchedPaths() const;
    const SubscribedCalendars& subscriptions() const { return m_subscriptions; }

private:
    std::unique_ptr<platform::EKEventStore> makeEventStore() override;
    void updateSources();
    void useSources(std::vector<CalendarSource> sources);
    void makeServer();
    std::unique_ptr<LiveCalendarStores> makeServerStores() const;
    void follow();

    UserCalendarOptions m_options;
    SubscribedCalendars m_subscriptions;
    std::vector<CalendarSource> m_named;                  // by setSources()
    std::optional<std::vector<CalendarSource>> m_sources; // those, and the subscriptions
    FileCalendarStores m_files;
    std::unique_ptr<LiveCalendarStores> m_server; // null until it is a source for the first time
    std::vector<CalendarSource> m_thunderbird;    // those sources that are Thunderbird's
    bool m_usesFiles = false;
    bool m_usesServer = false;
    std::unique_ptr<ThreadSignal> m_changed; // null without a handler
    CombinedCalendarStores m_stores;
};

} // namespace quorvel::freedesktop
