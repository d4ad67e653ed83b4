// Settings of the desktop, which exist only in a desktop session.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// One setting.
class DesktopSetting {
public:
    // Without a desktop session, or if the system does not know the setting, it has no value.
    DesktopSetting(const char* schema, const char* key);
    ~DesktopSetting(); // `onChange` is not called afterwards
    DesktopSetting(const DesktopSetting&) = delete;
    DesktopSetting& operator=(const DesktopSetting&) = delete;

    // Absent for a setting of another type too. Possibly the desktop's default.
    std::optional<std::string> value() const;
    std::optional<double> numberValue() const;
    std::optional<bool> flagValue() const;
    std::optional<std::string> userValue() const; // absent: the user has not set it
    // Called on the default main context of the thread that constructed the object. Set it once.
    void setOnChange(std::function<void()> onChange);

private:
    class Store;
    std::unique_ptr<Store> m_store; // null: it has no value
};

struct ClockFormatSetting : DesktopSetting {
    ClockFormatSetting();
    ClockFormat clockFormat() const; // the user's choice, else the locale's format
};

// The region whose formats the user has chosen, such as "de_DE.UTF-8".
struct RegionSetting : DesktopSetting {
    RegionSetting();
    std::optional<std::string> region() const; // absent: not set
};

// By which the desktop enlarges its texts, as set, not bounded; 1 where nothing is set.
struct TextScaleSetting : DesktopSetting {
    TextScaleSetting();
    double textScale() const;
};

// The current values of the settings above.
double desktopTextScale();
ClockFormat desktopClockFormat();

} // namespace quorvel::freedesktop
