// The real bundle on a platform in memory. The clock shows Monday, 2001-01-01, 10:00, and the
// widget searches the calendar "home".
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "agenda/event_gathering.h"
#include "agenda/settings_store.h"
#include "freedesktop/bundle/loaded_bundle.h"
#include "platform/memory/memory_platform.h"

namespace quorvel::shells {

inline constexpr const char* notificationController = "QuorvelViewControllerNew";
inline constexpr const char* legacyController = "QuorvelViewController";

constexpr platform::NSDate at(int day, int hour, int minute = 0) {
    return {day * 86400.0 + hour * 3600.0 + minute * 60.0};
}

class ShellFixture : public testing::Test {
protected:
    ShellFixture() {
        memory.clock.setNow(at(0, 10));
        memory.preferences.files[std::string(stockCalendarPreferencesPath)] =
            platform::PropertyListDictionary{};
        setSettings({});
    }

    void setSettings(platform::PropertyListDictionary dictionary) {
        memory.preferences.files[std::string(settingsFilePath)] = std::move(dictionary);
    }

    // Lasts an hour.
    platform::EKEvent event(const std::string& title, platform::NSDate start) const {
        platform::EKEvent made;
        made.title = title;
        made.startDate = start;
        made.endDate = start.dateByAddingTimeInterval(3600);
        made.calendar = home;
        made.persistentEvent.eventIdentifier = "home:" + title;
        return made;
    }
    void addEvents(int count) {
        for (int number = 0; number < count; ++number) {
            memory.calendarStores.addEvent(event("e" + std::to_string(number), at(0, 12, number)));
        }
    }

    // The link of an event that addEvents() added, by its number.
    static std::string linkOfRow(int row) {
        return "x-apple-calevent://home/e" + std::to_string(row) +
               "?o=" + std::to_string(43200 + row * 60) + ".0";
    }
    // The links opened since the last call.
    std::vector<std::string> takeOpened() { return std::exchange(memory.application.opened, {}); }

    platform::memory::MemoryPlatform memory;
    std::shared_ptr<const platform::EKCalendar> home =
        memory.calendarStores.addCalendar("home", "Home");
    std::shared_ptr<const freedesktop::LoadedBundle> loadedBundle =
        freedesktop::LoadedBundle::load(QUORVEL_BUNDLE, memory.screen).value();
    const freedesktop::LoadedBundle& bundle = *loadedBundle;
};

} // namespace quorvel::shells
