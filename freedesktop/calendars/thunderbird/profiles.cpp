#include "freedesktop/calendars/thunderbird/profiles.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>

#include <sys/stat.h>

#include "base/translatable_text.h"
#include "freedesktop/calendars/thunderbird/profile_list.h"
#include "freedesktop/io/file_version.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::size_t largestList = std::size_t{1} << 20U; // bytes
constexpr std::string_view listName = "profiles.ini";
constexpr std::string_view preferencesName = "prefs.js";
constexpr std::array<std::string_view, 3> places{"/.thunderbird",
                                                 "/.var/app/org.mozilla.Thunderbird/.thunderbird",
                                                 "/snap/thunderbird/common/.thunderbird"};

std::string homeFolder() {
    const char* const home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? home : "";
}

// Empty: the source names none.
std::string namedProfile(const CalendarSource& source) {
    const std::string folder = source.name.substr(sourceName.size());
    return folder.starts_with("~/") ? homeFolder() + folder.substr(1) : folder;
}

std::vector<std::string> listFolders() {
    std::vector<std::string> folders;
    const std::string home = homeFolder();
    for (const std::string_view place : places) {
        if (!home.empty()) {
            folders.push_back(home + std::string(place));
        }
    }
    return folders;
}

std::vector<std::string> profilesListedIn(const std::string& folder) {
    const auto bytes = readRegularFile(folder + "/" + std::string(listName), largestList);
    if (!bytes || !*bytes) {
        return {};
    }
    const auto& list = **bytes;
    return usedProfiles({reinterpret_cast<const char*>(list.data()), list.size()}, folder);
}

// Nanoseconds since 1970; 0 where there are none.
std::int64_t lastUseOf(const std::string& profile) {
    struct stat status {};
    return stat(preferencesPath(profile).c_str(), &status) == 0 ? versionOf(status).modified : 0;
}

bool isList(std::string_view name) {
    return name == listName;
}

bool isPreferences(std::string_view name) {
    return name == preferencesName;
}

// The file that SQLite shares between processes changes without a change of the content.
bool isDatabase(std::string_view name) {
    return (name.starts_with("local.sqlite") || name.starts_with("cache.sqlite")) &&
           !name.ends_with("-shm");
}

std::string databaseFolder(const std::string& profile) {
    return profile + "/calendar-data";
}

} // namespace

bool isThunderbird(const CalendarSource& source) {
    return !source.text && source.name.starts_with(sourceName);
}

std::vector<std::string> profilesOf(const CalendarSource& source) {
    if (std::string profile = namedProfile(source); !profile.empty()) {
        return {std::move(profile)};
    }
    std::vector<std::string> profiles;
    for (const std::string& folder : listFolders()) {
        for (std::string& profile : profilesListedIn(folder)) {
            if (lastUseOf(profile) != 0) {
                profiles.push_back(std::move(profile));
            }
        }
    }
    std::ranges::stable_sort(profiles, std::greater(), lastUseOf);
    return profiles;
}

Result<void, TranslatableText> checkProfiles(const CalendarSource& source) {
    const std::vector<std::string> profiles = profilesOf(source);
    if (profiles.empty()) {
        return TranslatableText(translatable("Thunderbird has no profile here"));
    }
    if (lastUseOf(profiles.front()) == 0) {
        return TranslatableText(translatable("there is no file prefs.js in that folder"));
    }
    return {};
}

std::string preferencesPath(const std::string& profile) {
    return profile + "/" + std::string(preferencesName);
}

std::string localDatabasePath(const std::string& profile) {
    return databaseFolder(profile) + "/local.sqlite";
}

std::string cacheDatabasePath(const std::string& profile) {
    return databaseFolder(profile) + "/cache.sqlite";
}

std::vector<ProfileFolder> foldersToWatch(const CalendarSource& source) {
    std::vector<ProfileFolder> folders;
    if (namedProfile(source).empty()) {
        for (std::string& folder : listFolders()) {
            folders.push_back({std::move(folder), isList});
        }
    }
    for (std::string& profile : profilesOf(source)) {
        folders.push_back({databaseFolder(profile), isDatabase});
        folders.push_back({std::move(profile), isPreferences});
    }
    return folders;
}

} // namespace quorvel::freedesktop::thunderbird
