// A profile as Thunderbird makes it, behind a store of calendars.
#pragma once

#include <filesystem>
#include <string>

#include "tests/freedesktop/calendars/store/store_fixture.h"
#include "tests/freedesktop/calendars/thunderbird/written_database.h"

namespace quorvel::freedesktop::thunderbird {

class ProfileFixture : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        std::filesystem::create_directories(folder / "profile/calendar-data");
        stores.setSources({CalendarSource::at("thunderbird:" + profile())});
    }

    std::string profile() const { return (folder / "profile").string(); }
    std::filesystem::path local() const { return folder / "profile/calendar-data/local.sqlite"; }
    std::filesystem::path cache() const { return folder / "profile/calendar-data/cache.sqlite"; }

    // Entries of prefs.js, such as `registry.home.name", "Home"`.
    void registerCalendar(const std::string& id, const std::string& name,
                          const std::string& type = "storage", const std::string& more = {}) {
        const std::string key = "user_pref(\"calendar.registry." + id + ".";
        m_preferences +=
            key + "name\", \"" + name + "\");\n" + key + "type\", \"" + type + "\");\n";
        for (std::string rest = more; !rest.empty();) {
            const std::size_t end = rest.find('\n');
            m_preferences += key + rest.substr(0, end) + ");\n";
            rest.erase(0, end == std::string::npos ? end : end + 1);
        }
        write("profile/prefs.js", m_preferences);
    }

    // Databases with Thunderbird's tables and a calendar "home".
    Database homeDatabase() {
        registerCalendar("home", "Home");
        Database database(local());
        database.run(calendarTables);
        return database;
    }

    // Everything in the profile: paths, sizes, times of change.
    std::string profileState() const {
        std::string state;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(profile())) {
            state += entry.path().string() + " " +
                     std::to_string(entry.last_write_time().time_since_epoch().count()) + "\n";
        }
        return state;
    }

    std::string m_preferences = "// Mozilla User Preferences\n";
};

} // namespace quorvel::freedesktop::thunderbird
