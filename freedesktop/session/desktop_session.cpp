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
                  std::function<void(std::shared_ptr<const TimeZone>)> changed)
        : m_zone(std::move(zone))
        , m_changed(std::move(changed))
        , m_files(log, [this] { m_changed(m_zone.read()); }) {
        m_files.watch({{m_zone.file}});
    }

private:
    HostTimeZone m_zone;
    std::function<void(std::shared_ptr<const TimeZone>)> m_changed;
    FileChanges m_files;
};

class DesktopSession::LocaleWatch {
public:
    explicit LocaleWatch(std::function<void(const std::string&)> changed)
        : m_changed(std::move(changed))
        , m_known{environmentValue("LC_ALL"), environmentValue("LC_TIME"), environmentValue("LANG"),
                  m_region.region().value_or(""), std::nullopt} {
        m_region.whenChanged([this] {
            m_known.region = m_region.region().value_or("");
            tell();
        });
    }

    void setSystem(std::vector<std::string> assignments) {
        m_known.system = std::move(assignments);
        tell();
    }

private:
    void tell() { m_changed(localeOf(m_known)); }

    std::function<void(const std::string&)> m_changed;
    RegionSetting m_region;
    SessionLocale m_known;
};

class DesktopSession::ClockFormatWatch {
public:
    explicit ClockFormatWatch(std::function<void(ClockFormat)> changed)
        : m_changed(std::move(changed)) {
        m_setting.whenChanged([this] { m_changed(m_setting.clockFormat()); });
    }

private:
    std::function<void(ClockFormat)> m_changed;
    ClockFormatSetting m_setting;
};

DesktopSession::DesktopSession(platform::SystemLog& log, SessionChanges changes,
                               HostTimeZone hostTimeZone) {
    if (changes.timeZone && environmentValue("TZ").empty()) {
        m_timeZone = std::make_unique<TimeZoneWatch>(log, std::move(hostTimeZone),
                                                     std::move(changes.timeZone));
    }
    if (changes.clockFormat) {
        m_clockFormat = std::make_unique<ClockFormatWatch>(std::move(changes.clockFormat));
    }
    SystemBusEvents events{std::move(changes.resumed), nullptr};
    if (changes.locale) {
        m_locale = std::make_unique<LocaleWatch>(std::move(changes.locale));
        events.localeChanged = [this](std::vector<std::string> assignments) {
            m_locale->setSystem(std::move(assignments));
        };
    }
    m_systemBus = std::make_unique<SystemBusSignals>(std::move(events));
}

DesktopSession::~DesktopSession() = default;

} // namespace quorvel::freedesktop
