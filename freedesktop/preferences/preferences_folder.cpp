#include "freedesktop/preferences/preferences_folder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;

constexpr std::array<std::string_view, 2> preferencesDirectories{
    "/var/mobile/Library/Preferences/", "/private/var/mobile/Library/Preferences/"};
constexpr std::string_view stockCalendarFile = "com.apple.mobilecal.plist";
constexpr std::string_view propertyListSuffix = ".plist";

// The part of a path below the platform's preferences directories.
std::optional<std::string_view> nameInPreferences(std::string_view path) {
    for (const std::string_view directory : preferencesDirectories) {
        if (path.substr(0, directory.size()) == directory) {
            return path.substr(directory.size());
        }
    }
    return std::nullopt;
}

bool climbs(std::string_view name) {
    while (!name.empty()) {
        const std::size_t slash = std::min(name.find('/'), name.size());
        if (name.substr(0, slash) == "..") {
            return true;
        }
        name.remove_prefix(std::min(slash + 1, name.size()));
    }
    return false;
}

} // namespace

bool mayHoldPropertyList(std::string_view name) {
    return name.size() > propertyListSuffix.size() &&
           name.substr(name.size() - propertyListSuffix.size()) == propertyListSuffix;
}

PreferencesFolder::PreferencesFolder(std::string folder, double foundationVersionNumber,
                                     platform::SystemLog& log)
    : m_folder(std::move(folder))
    , m_foundationVersionNumber(foundationVersionNumber)
    , m_log(log) {}

std::optional<std::string> PreferencesFolder::pathInFolder(std::string_view name) const {
    if (name.empty() || climbs(name)) {
        return std::nullopt;
    }
    return m_folder + "/" + std::string(name);
}

std::optional<std::string> PreferencesFolder::localPath(std::string_view path) const {
    const auto name = nameInPreferences(path);
    return name ? pathInFolder(*name) : std::string(path);
}

void PreferencesFolder::report(const std::string& path, const std::string& problem) {
    std::string& reported = m_reported[path];
    if (reported != problem) {
        reported = problem;
        m_log.log("cannot read " + path + ": " + problem);
    }
}

PropertyListDictionary PreferencesFolder::stockCalendarPreferences() const {
    PropertyListArray deselected;
    if (m_deselectedCalendars) {
        for (std::string& identifier : m_deselectedCalendars()) {
            deselected.push_back({std::move(identifier)});
        }
    }
    return {{"LastDeselectedCalendars", {std::move(deselected)}}};
}

template <class Kind>
std::optional<Kind> PreferencesFolder::readAs(const std::string& path, const char* kind,
                                              bool& missing) {
    PropertyListReading reading = readPropertyListFile(path);
    missing = reading.missing;
    if (reading.value) {
        if (auto* const value = std::get_if<Kind>(&reading.value->value)) {
            m_reported.erase(path);
            return std::move(*value);
        }
        reading.problem = std::string("it holds no ") + kind;
    }
    if (missing) {
        m_reported.erase(path);
    } else {
        report(path, reading.problem);
    }
    return std::nullopt;
}

std::optional<PropertyListDictionary>
PreferencesFolder::dictionaryWithContentsOfFile(std::string_view path) {
    const auto local = localPath(path);
    if (!local) {
        return std::nullopt;
    }
    bool missing = false;
    auto dictionary = readAs<PropertyListDictionary>(*local, "dictionary", missing);
    if (missing && nameInPreferences(path) == stockCalendarFile) {
        return stockCalendarPreferences();
    }
    return dictionary;
}

std::optional<PropertyListArray> PreferencesFolder::arrayWithContentsOfFile(std::string_view path) {
    const auto local = localPath(path);
    bool missing = false;
    return local ? readAs<PropertyListArray>(*local, "array", missing) : std::nullopt;
}

std::optional<PropertyListDictionary> PreferencesFolder::domainDictionary(std::string_view domain) {
    const auto path = domain.find('/') == std::string_view::npos && !domain.empty()
                          ? pathInFolder(std::string(domain).append(propertyListSuffix))
                          : std::nullopt;
    bool missing = false;
    return path ? readAs<PropertyListDictionary>(*path, "dictionary", missing) : std::nullopt;
}

std::optional<std::vector<std::string>> PreferencesFolder::copyKeyList(std::string_view domain) {
    const auto dictionary = domainDictionary(domain);
    if (!dictionary || dictionary->empty()) {
        return std::nullopt;
    }
    std::vector<std::string> keys;
    for (const auto& [key, value] : *dictionary) {
        keys.push_back(key);
    }
    return keys;
}

std::optional<PropertyListDictionary>
PreferencesFolder::copyMultiple(const std::vector<std::string>& keys, std::string_view domain) {
    auto dictionary = domainDictionary(domain);
    PropertyListDictionary found;
    for (const std::string& key : keys) {
        if (!dictionary) {
            break;
        }
        if (auto node = dictionary->extract(key)) {
            found.insert(std::move(node));
        }
    }
    return found;
}

} // namespace quorvel::freedesktop
