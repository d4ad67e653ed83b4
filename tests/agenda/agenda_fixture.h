// What the tests of the widget share: a platform in memory, settings as a process starts with them,
// and short functions that fill the files and calendars. Day 0 is Monday, 2001-01-01.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "agenda/event_gathering.h"
#include "agenda/settings.h"
#include "agenda/settings_store.h"
#include "platform/memory/memory_platform.h"
#include "tests/cell/row_settings_reset.h"

namespace quorvel {

inline void resetToZeroState() {
    resetRowSettings();
    settings::limitMaxHeight = false;
    settings::customLaunchAppBundleID.reset();
    settings::showSeparatorLines = false;
    settings::onlySelectedCalendars = false;
    settings::displayLocation = false;
    settings::sameHeightRows = false;
    settings::daysToDisplay = 0;
    settings::maxEventsToDisplay = 0;
    settings::iconFile.reset();
    settings::iconRoundingNeeded = false;
}

inline platform::PropertyListValue plist(bool value) {
    return {value};
}
inline platform::PropertyListValue plist(int value) {
    return {std::int64_t{value}};
}
inline platform::PropertyListValue plist(double value) {
    return {value};
}
inline platform::PropertyListValue plist(const char* value) {
    return {std::string(value)};
}

constexpr platform::NSDate at(int day, int hour, int minute = 0) {
    return {day * 86400.0 + hour * 3600.0 + minute * 60.0};
}

inline SharedEventRecords listOf(EventRecords records) {
    return std::make_shared<const EventRecords>(std::move(records));
}

class AgendaFixture : public testing::Test {
protected:
    AgendaFixture() {
        resetToZeroState();
        memory.clock.setNow(at(0, 10));
    }
    ~AgendaFixture() override { resetToZeroState(); }

    void setSettings(platform::PropertyListDictionary dictionary) {
        memory.preferences.files[std::string(settingsFilePath)] = std::move(dictionary);
    }

    // All calendars are switched on from here.
    void setStockPreferences(platform::PropertyListDictionary dictionary = {}) {
        memory.preferences.files[std::string(stockCalendarPreferencesPath)] = std::move(dictionary);
    }

    void setSelection(platform::PropertyListArray identifiers) {
        memory.preferences.files[std::string(calendarSelectionPath)] = std::move(identifiers);
    }

    // An hour in the calendar "home", which is made with the first event.
    platform::EKEvent event(std::string title, platform::NSDate start) {
        if (!home) {
            home = memory.calendarStores.addCalendar("home", "Home", homeColor);
        }
        platform::EKEvent made;
        made.title = std::move(title);
        made.startDate = start;
        made.endDate = start.dateByAddingTimeInterval(3600);
        made.calendar = home;
        made.persistentEvent.eventIdentifier = "home:" + *made.title;
        return made;
    }

    void addEvent(std::string title, platform::NSDate start) {
        memory.calendarStores.addEvent(event(std::move(title), start));
    }

    const platform::Platform& platform() const { return memory.platform(); }

    static constexpr platform::UIColor homeColor{0, 0.5, 0.75, 1};
    platform::memory::MemoryPlatform memory;
    std::shared_ptr<const platform::EKCalendar> home;
};

} // namespace quorvel
