// The whole platform on Linux, put together from plain options.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/dates/clock_format.h"
#include "freedesktop/dates/time_zone.h"
#include "freedesktop/session/watched_path.h"
#include "freedesktop/text/text_lines.h"
#include "platform/ns_date.h"
#include "platform/platform.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

class LoadedBundle;

struct FreedesktopOptions {
    std::shared_ptr<const TimeZone> timeZone; // never null
    bool followsTimeZone = true;              // false: the user has chosen this one
    std::string locale;                       // as canonicalLocale() gives it
    bool followsLocale = true;                // false: the user has chosen this one
    ClockFormat clockFormat = ClockFormat::ofLocale;
    std::optional<std::string> fontFamily; // absent: the desktop's
    bool measuresText = true;              // false: of a host that prints, and shows no text
    std::string dataFolder;                // with the pictures that come with the program
    std::string preferencesFolder;
    double foundationVersionNumber = 1047.25;
    std::vector<CalendarSource> calendars; // one of them may be the data server
    std::string dataServerModule;          // the file that wraps the data server's library
    DataServerWaits dataServerWaits;
    std::function<void(const CalendarProblem&)> calendarProblemHandler;
    std::string calendarIndexFolder; // empty: no index is kept
    // False: of a host that is alive, which is told when more of them is there.
    bool waitsForCalendars = true;
    std::optional<platform::NSDate> now; // absent: the system's clock
    bool clockRuns = false;              // from `now` on; false: it stands there
    platform::CGFloat scale = 1;         // pixels a point
    std::vector<std::shared_ptr<platform::SystemLog>> logs;
};

// For one thread. Lives longer than everything that is made with its platform.
class FreedesktopPlatform {
public:
    explicit FreedesktopPlatform(FreedesktopOptions options);
    ~FreedesktopPlatform();
    FreedesktopPlatform(const FreedesktopPlatform&) = delete;
    FreedesktopPlatform& operator=(const FreedesktopPlatform&) = delete;

    const platform::Platform& platform() const;
    // What texts are painted with, for pictures of the widget.
    const std::shared_ptr<TextLines>& textLines() const;

    // Throws BundleError. From here on the platform finds the bundle by its classes.
    std::shared_ptr<const LoadedBundle> loadBundle(const std::string& path);

    // For a host that does not wait for calendars: starts reading them on a thread of their own, so
    // that the first presentation finds them there. Everything else of the platform stays on the
    // caller's thread.
    void beginReadingCalendars();
    // Whether the last event store had a calendar at all that could be read.
    bool hasReadableCalendars() const;
    // What that calendar of the last event store comes from, for people.
    std::string storeOfCalendar(std::string_view identifier) const;

    // What is read after the call is read from there.
    void setPreferencesFolder(const std::string& folder);
    void setCalendars(std::vector<CalendarSource> calendars);
    void setNow(platform::NSDate date); // the clock stands there

    // What is shown after the call follows.
    void setTimeZone(std::shared_ptr<const TimeZone> zone); // never null
    void setLocale(const std::string& locale);              // as canonicalLocale() gives it
    void setClockFormat(ClockFormat clockFormat);
    void setScale(platform::CGFloat scale); // pixels a point

    // Whether the host is to follow the session's time zone, and its locale and clock format.
    bool followsTimeZone() const;
    bool followsLocale() const;
    const std::shared_ptr<const TimeZone>& timeZone() const;
    const std::string& locale() const;
    ClockFormat clockFormat() const;

    // What the system's clock reads at that instant of the platform's; absent where that stands.
    std::optional<platform::NSDate> systemInstant(platform::NSDate instant) const;

    // Where the settings and the calendars come from.
    std::vector<WatchedPath> watchedPaths() const;
    // Told when calendars that are not files change, or have come after they were not waited for;
    // on the default main context of the thread that sets this. Null: nobody is.
    void setCalendarsChangedHandler(std::function<void()> changed);

    // Runs the default main context until every launch was answered, or the time is over. True: all
    // were answered.
    bool waitForLaunches(double seconds);

private:
    struct Services;
    std::unique_ptr<Services> m_services;
};

} // namespace quorvel::freedesktop
