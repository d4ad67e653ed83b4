#include "freedesktop/session/desktop_session.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "freedesktop/session/desktop_settings.h"
#include "freedesktop/session/file_changes.h"
#include "freedesktop/session/session_locale.h"
#include "freedesktop/session/system_bus_signals.h"

namespace quorvel::freedesktop {

namespace {

std::string environmentValue(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

class DesktopSession::TimeZoneWatch {
public:
    TimeZoneWatch(platform::SystemLog& log, HostTimeZone zone,
                  std::function<void(std::shared_ptr<const TimeZone>)> onChange)
        : m_zone(std::move(zone))
        , m_onChange(std::move(onChange))
        , m_files(log, [this] { m_onChange(m_zone.read()); }) {
        m_files.watch({{m_zone.file}});
    }

private:
    HostTimeZone m_zone;
    std::function<void(std::shared_ptr<const TimeZone>)> m_onChange;
    FileChanges m_files;
};

class DesktopSession::LocaleWatch {
public:
    explicit LocaleWatch(std::function<void(const std::string&)> onChange)
        : m_onChange(std::move(onChange))
        , m_known{environmentValue("LC_ALL"), environmentValue("LC_TIME"), environmentValue("LANG"),
                  m_region.region().value_or(""), std::nullopt} {
        m_region.setOnChange([this] {
            m_known.region = m_region.region().value_or("");
            notify();
        });
    }

    void setSystem(std::vector<std::string> assignments) {
        m_known.system = std::move(assignments);
        notify();
    }

private:
    void notify() { m_onChange(localeOf(m_known)); }

    std::function<void(const std::string&)> m_onChange;
    RegionSetting m_region;
    SessionLocale m_known;
};

class DesktopSession::ClockFormatWatch {
public:
    explicit ClockFormatWatch(std::function<void(ClockFormat)> onChange)
        : m_onChange(std::move(onChange)) {
        m_setting.setOnChange([this] { m_onChange(m_setting.clockFormat()); });
    }

private:
    std::function<void(ClockFormat)> m_onChange;
    ClockFormatSetting m_setting;
};

DesktopSession::DesktopSession(platform::SystemLog& log, SessionChanges changes,
                               HostTimeZone hostTimeZone) {
    if (changes.onTimeZone && environmentValue("TZ").empty()) {
        m_timeZone = std::make_unique<TimeZoneWatch>(log, std::move(hostTimeZone),
                                                     std::move(changes.onTimeZone));
    }
    if (changes.onClockFormat) {
        m_clockFormat = std::make_unique<ClockFormatWatch>(std::move(changes.onClockFormat));
    }
    SystemBusEvents events{std::move(changes.onResume), nullptr};
    if (changes.onLocale) {
        m_locale = std::make_unique<LocaleWatch>(std::move(changes.onLocale));
        events.onLocale = [this](std::vector<std::string> assignments) {
            m_locale->setSystem(std::move(assignments));
        };
    }
    m_systemBus = std::make_unique<SystemBusSignals>(std::move(events));
}

DesktopSession::~DesktopSession() = default;

} // namespace quorvel::freedesktop
