// Reports changes of the session's time zone, locale and clock format, and resuming from sleep.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "freedesktop/dates/clock_format.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

class SystemBusSignals;

// Each is called with the current value, which may be the same as before. Null: not followed.
struct SessionChanges {
    std::function<void(std::shared_ptr<const TimeZone>)> onTimeZone;
    std::function<void(const std::string&)> onLocale; // in the form of canonicalLocale()
    std::function<void(ClockFormat)> onClockFormat;
    std::function<void()> onResume; // from sleep
};

// Where the machine stores its time zone.
struct HostTimeZone {
    std::string file = "/etc/localtime";
    std::function<std::shared_ptr<const TimeZone>()> read = hostTimeZone;
};

// Calls on the default main context of the thread that constructs it; the calls must not destroy
// it. Does not follow what the environment sets (TZ, LC_ALL).
class DesktopSession {
public:
    // The log must outlive the object.
    DesktopSession(platform::SystemLog& log, SessionChanges changes,
                   HostTimeZone hostTimeZone = {});
    ~DesktopSession(); // no function is called afterwards
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

private:
    class TimeZoneWatch;
    class LocaleWatch;
    class ClockFormatWatch;
    std::unique_ptr<TimeZoneWatch> m_timeZone;       // null: not followed
    std::unique_ptr<LocaleWatch> m_locale;           // likewise
    std::unique_ptr<ClockFormatWatch> m_clockFormat; // likewise
    std::unique_ptr<SystemBusSignals> m_systemBus;
};

} // namespace quorvel::freedesktop
