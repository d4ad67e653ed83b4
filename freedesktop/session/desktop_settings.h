// The desktop's own settings, where a desktop has put some.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// One setting that holds a text. For one thread.
class DesktopSetting {
public:
    // Without a desktop session, or where the system does not know the setting, it has no value.
    DesktopSetting(const char* schema, const char* key);
    ~DesktopSetting(); // nothing is called afterwards
    DesktopSetting(const DesktopSetting&) = delete;
    DesktopSetting& operator=(const DesktopSetting&) = delete;

    std::optional<std::string> value() const;     // the desktop's default too
    std::optional<std::string> userValue() const; // only what the user has set
    // On the default main context of the thread that made this. Once.
    void whenChanged(std::function<void()> changed);

private:
    class Store;
    std::unique_ptr<Store> m_store; // null: it has no value
};

struct ClockFormatSetting : DesktopSetting {
    ClockFormatSetting();
    ClockFormat clockFormat() const; // what the user has set, else the locale's own
};

// "de_DE.UTF-8": the region whose formats the user has set; else absent.
struct RegionSetting : DesktopSetting {
    RegionSetting();
    std::optional<std::string> region() const;
};

// What ClockFormatSetting says now.
ClockFormat desktopClockFormat();

} // namespace quorvel::freedesktop
