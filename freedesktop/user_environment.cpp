#include "freedesktop/user_environment.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>

#include "freedesktop/calendars/server/server_check.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/calendars/thunderbird/profiles.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/io/user_folder.h"

namespace quorvel::freedesktop {

namespace {

std::string_view environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

std::string userLocale() {
    return defaultLocale(environmentValue("LC_ALL"), environmentValue("LC_TIME"),
                         environmentValue("LANG"));
}

std::vector<CalendarSource> usualCalendars() {
    std::vector<CalendarSource> sources =
        defaultCalendarSources(environmentValue("XDG_DATA_HOME"), environmentValue("HOME"));
    CalendarSource ofThunderbird = CalendarSource::at(std::string(thunderbird::sourceName));
    ofThunderbird.isOptional = true;
    sources.push_back(std::move(ofThunderbird));
    if (eds::checkDataServer()) {
        CalendarSource server = CalendarSource::at(std::string(dataServerSourceName));
        server.isOptional = true;
        sources.insert(sources.begin(), std::move(server));
    }
    return sources;
}

std::string userPreferencesFolder() {
    return (userFolder("XDG_CONFIG_HOME", ".config") / "Preferences").string();
}

std::string userIndexFolder() {
    const std::filesystem::path folder = userFolder("XDG_CACHE_HOME", ".cache");
    return folder.is_absolute() ? folder.string() : std::string();
}

std::string userWindowGeometryFile() {
    const std::filesystem::path folder = userFolder("XDG_STATE_HOME", ".local/state");
    return folder.is_absolute() ? (folder / "window").string() : std::string();
}

std::string userLinkProgram() {
    return std::string(environmentValue("QUORVEL_LINK_PROGRAM"));
}

} // namespace quorvel::freedesktop
