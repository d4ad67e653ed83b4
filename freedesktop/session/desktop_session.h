// What a program that stays has to hear from the session that it runs in.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "freedesktop/dates/clock_format.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

class SystemBusSignals;

// Each with what holds now, which need not be another than before. Null: not followed.
struct SessionChanges {
    std::function<void(std::shared_ptr<const TimeZone>)> timeZone;
    std::function<void(const std::string&)> locale; // as canonicalLocale() gives it
    std::function<void(ClockFormat)> clockFormat;
    std::function<void()> resumed; // from sleep
};

// Where the machine keeps its time zone.
struct HostTimeZone {
    std::string file = "/etc/localtime";
    std::function<std::shared_ptr<const TimeZone>()> read = hostTimeZone;
};

// On the default main context of the thread that makes this; the calls do not end it. What the
// environment fixes (TZ, LC_ALL) does not change.
class DesktopSession {
public:
    // The log outlives this.
    DesktopSession(platform::SystemLog& log, SessionChanges changes,
                   HostTimeZone hostTimeZone = {});
    ~DesktopSession(); // nothing is called afterwards
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

private:
    class TimeZoneWatch;
    class LocaleWatch;
    class ClockFormatWatch;
    std::unique_ptr<TimeZoneWatch> m_timeZone; // null: not followed, as the next two
    std::unique_ptr<LocaleWatch> m_locale;
    std::unique_ptr<ClockFormatWatch> m_clockFormat;
    std::unique_ptr<SystemBusSignals> m_systemBus;
};

} // namespace quorvel::freedesktop
