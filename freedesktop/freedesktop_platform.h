// The complete platform for Linux, made from plain options.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/dates/clock_format.h"
#include "freedesktop/dates/time_zone.h"
#include "freedesktop/desktop/desktop.h"
#include "freedesktop/glib/child_program.h"
#include "freedesktop/launch/launcher.h"
#include "freedesktop/rendering/rendering.h"
#include "freedesktop/session/watched_path.h"
#include "freedesktop/subscribed_calendars.h"
#include "platform/ns_date.h"
#include "platform/platform.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

class LaunchContext;
class LoadedBundle;

struct FreedesktopOptions {
    std::shared_ptr<const TimeZone> timeZone; // never null
    bool followsTimeZone = true;              // false: the user has chosen this one
    std::string locale;                       // in the form of canonicalLocale()
    bool followsLocale = true;                // false: the user has chosen this one
    ClockFormat clockFormat = ClockFormat::ofLocale;
    std::optional<std::string> fontFamily; // absent: the desktop's
    platform::CGFloat textScale = 1;       // see TextLines::setTextScale()
    RenderingFactory makeRendering;        // null: for a host that shows nothing
    std::shared_ptr<Desktop> desktop;      // null: as where there is no session bus
    LauncherFactory makeLauncher;          // null: for a host that opens nothing
    std::string dataFolder;                // with the pictures that come with the program
    std::string preferencesFolder;
    double foundationVersionNumber = 1047.25;
    std::vector<CalendarSource> calendars; // one of them may be the data server
    SubscriptionOptions subscriptions;
    std::string dataServerModule; // the file that wraps the data server's library
    DataServerWaits dataServerWaits;
    // For a host that stays and updates itself, whose thread must not wait for the server nor
    // expand its events: how long it waits at most. A background thread then does both, waits as
    // long as dataServerWaits, and calls the handler of problems. Absent: the host's thread does
    // both.
    std::optional<DataServerWaits> backgroundServerWaits;
    std::function<void(const CalendarProblem&)> calendarProblemHandler;
    // Called for a file of settings that cannot be read, see PreferencesFolder. Null: none.
    std::function<void(const Error&)> preferencesProblemHandler;
    std::string calendarIndexFolder; // empty: no index
    // How long a host that stays waits for its calendars, see setCalendarsChangedHandler(). Absent:
    // until they have been read.
    std::optional<CalendarWaits> calendarWaits;
    std::optional<platform::NSDate> now; // absent: the system's clock
    bool clockRuns = false;              // whether the clock runs from `now` on
    platform::CGFloat scale = 1;         // pixels per point
    std::string linkProgram; // opens the widget's links; empty: the desktop's handlers of them
    std::vector<std::shared_ptr<platform::SystemLog>> logs;
};

// Must outlive everything that is made with its platform.
class FreedesktopPlatform {
public:
    explicit FreedesktopPlatform(FreedesktopOptions options);
    ~FreedesktopPlatform();
    FreedesktopPlatform(const FreedesktopPlatform&) = delete;
    FreedesktopPlatform& operator=(const FreedesktopPlatform&) = delete;

    const platform::Platform& platform() const;
    // For pictures of the widget.
    Rendering& rendering() const;

    // Afterwards the platform finds the bundle by its classes. The bundle is not null.
    Result<std::shared_ptr<const LoadedBundle>> loadBundle(const std::string& path);

    // For a host whose waits are bounded: starts to read them on a background thread, so
    // that the first presentation has them. All other parts of the platform belong to the caller's
    // thread.
    void beginReadingCalendars();
    // Whether the last event store had at least one readable calendar.
    bool hasReadableCalendars() const;
    // What the last event store could not read at all: files and folders, by their names without
    // the folders around them, and calendars of the data server, by names that users know. Also
    // what calendarProblemHandler has got before.
    std::vector<CalendarProblem> unreadableCalendars() const;
    // Whether the last event store lacks what was not read in time; see
    // setCalendarsChangedHandler().
    bool areCalendarsLate() const;
    // Where that calendar of the last event store is, to show to the user: the path of a file or
    // folder, or the name of a program. Empty: there is no such calendar.
    std::string storeOfCalendar(std::string_view identifier) const;

    // These take effect with the next read.
    void setPreferencesFolder(const std::string& folder);
    void setCalendars(std::vector<CalendarSource> calendars);
    void setNow(platform::NSDate date); // and stops the clock

    // These take effect with the next presentation.
    void setTimeZone(std::shared_ptr<const TimeZone> zone); // never null
    void setLocale(const std::string& locale);              // in the form of canonicalLocale()
    void setClockFormat(ClockFormat clockFormat);
    void setScale(platform::CGFloat scale);     // pixels per point
    void setTextScale(platform::CGFloat scale); // see TextLines::setTextScale()
    void reloadFonts();                         // after the desktop's font has changed

    // Whether the host should follow the session's time zone, or its locale and clock format.
    bool followsTimeZone() const;
    bool followsLocale() const;
    const std::shared_ptr<const TimeZone>& timeZone() const;
    const std::string& locale() const;
    ClockFormat clockFormat() const;

    // The time of the system's clock at that time of the platform's clock. Absent if the latter is
    // stopped.
    std::optional<platform::NSDate> systemInstant(platform::NSDate instant) const;

    // The files and folders of the settings and calendars.
    std::vector<WatchedPath> watchedPaths() const;
    // When copies of calendars on servers are to be fetched again; absent: there is none to fetch.
    // Not negative.
    std::optional<double> secondsUntilRefresh() const;
    // Fetches those that are due. Absent: none is.
    std::optional<ProgramCall> refreshCall() const;
    // Fetches those, due or not, that were not asked for within that many seconds. Absent: none.
    std::optional<ProgramCall> refreshCallForOlderThan(std::int64_t seconds) const;
    // Called when calendars that are not files change, or when calendars arrive that were not
    // waited for. Runs on the default main context of the thread that sets it. Null: none.
    void setCalendarsChangedHandler(std::function<void()> onChange);

    // See DesktopLauncher. The context is not owned; null: none.
    void setLaunchContext(LaunchContext* context);
    void setLaunchFailureHandler(std::function<void(const Error&)> onFailure); // null: none

    // Runs the default main context until every launch was answered or the time is over. True: all
    // were answered.
    bool waitForLaunches(double seconds);

private:
    struct Services;
    std::unique_ptr<Services> m_services;
};

} // namespace quorvel::freedesktop
