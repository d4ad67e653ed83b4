// The user's calendars, wherever they are: in files and in the data server.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/store/combined_calendar_stores.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop {

class ThreadSignal;

struct UserCalendarOptions {
    std::shared_ptr<const TimeZone> timeZone; // never null
    CalendarProblemHandler problemHandler;
    std::string dataServerModule; // the file that wraps the data server's library
    DataServerWaits dataServerWaits;
};

// For one thread.
class UserCalendars {
public:
    explicit UserCalendars(UserCalendarOptions options);
    ~UserCalendars();
    UserCalendars(const UserCalendars&) = delete;
    UserCalendars& operator=(const UserCalendars&) = delete;

    platform::CalendarStores& stores() { return m_stores; }

    // The data server's calendars stand before the files' where it is named first, else behind.
    void setSources(std::vector<CalendarSource> sources);
    void setTimeZone(const std::shared_ptr<const TimeZone>& zone); // never null
    // As those of the stores of files, likewise before the first store.
    void setIndex(const std::string& folder, std::function<void(const std::string&)> say);
    void setWaits(CalendarWaits waits);
    // As that of the stores of files; the data server is looked for from the beginning anyway.
    void beginReading();
    // Told of changes in the data server, and of files that were read after nobody waited for them
    // any longer, on the default main context of the thread that sets this.
    // Null: nobody is.
    void setChangedHandler(std::function<void()> changed);

    // Of the last store.
    bool anyReadable() const;
    std::string storeOf(std::string_view identifier) const;
    std::vector<std::string> deselected() const; // by the desktop's calendar application

    std::vector<std::string> paths() const; // of files and folders

private:
    void makeServer();
    void follow();

    UserCalendarOptions m_options;
    FileCalendarStores m_files;
    std::unique_ptr<ServerCalendarStores> m_server; // null before it is named; kept from then on
    bool m_usesFiles = false;
    bool m_usesServer = false;
    std::unique_ptr<ThreadSignal> m_changed; // null: nobody is told
    CombinedCalendarStores m_stores;
};

} // namespace quorvel::freedesktop
