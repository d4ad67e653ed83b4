#include "freedesktop/preferences/preferences_folder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;

constexpr std::array<std::string_view, 2> preferencesDirectories{
    "/var/mobile/Library/Preferences/", "/private/var/mobile/Library/Preferences/"};
constexpr std::string_view stockCalendarFile = "com.apple.mobilecal.plist";
constexpr std::string_view propertyListSuffix = ".plist";
constexpr const char* noDictionary = translatable("it holds no dictionary");
constexpr const char* noArray = translatable("it holds no array");

// The part of a path below the platform's preferences directories.
std::optional<std::string_view> nameInPreferences(std::string_view path) {
    for (const std::string_view directory : preferencesDirectories) {
        if (path.starts_with(directory)) {
            return path.substr(directory.size());
        }
    }
    return std::nullopt;
}

// Whether a part of the path is "..".
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

template <class Kind>
std::optional<Kind> valueOrAbsent(Result<std::optional<Kind>> result) {
    return result ? std::move(result).value() : std::nullopt;
}

} // namespace

bool mayHoldPropertyList(std::string_view name) {
    return name.size() > propertyListSuffix.size() && name.ends_with(propertyListSuffix);
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
Result<std::optional<Kind>> PreferencesFolder::failure(const std::string& path, Error error) {
    std::string& logged = m_logged[path];
    if (logged != error.what) {
        logged = error.what;
        const std::string place = error.where.empty() ? path : path + ':' + error.where;
        m_log.log("cannot read " + place + ": " + error.what);
        if (m_onProblem) {
            m_onProblem({error.what, place, {}});
        }
    }
    return error;
}

template <class Kind>
Result<std::optional<Kind>> PreferencesFolder::readAs(const std::string& path,
                                                      const char* wrongKind) {
    auto value = readPropertyListFile(path);
    if (!value) {
        return failure<Kind>(path, value.error());
    }
    std::optional<platform::PropertyListValue>& list = *value;
    auto* const wanted = list ? std::get_if<Kind>(&list->value) : nullptr;
    if (list && wanted == nullptr) {
        return failure<Kind>(path, {wrongKind, {}, {}});
    }
    m_logged.erase(path);
    return list ? std::optional(std::move(*wanted)) : std::nullopt;
}

std::optional<PropertyListDictionary>
PreferencesFolder::dictionaryWithContentsOfFile(std::string_view path) {
    const auto local = localPath(path);
    if (!local) {
        return std::nullopt;
    }
    auto dictionary = readAs<PropertyListDictionary>(*local, noDictionary);
    const bool isMissing = dictionary && !*dictionary;
    if (isMissing && nameInPreferences(path) == stockCalendarFile) {
        return stockCalendarPreferences();
    }
    return valueOrAbsent(std::move(dictionary));
}

std::optional<PropertyListArray> PreferencesFolder::arrayWithContentsOfFile(std::string_view path) {
    const auto local = localPath(path);
    return local ? valueOrAbsent(readAs<PropertyListArray>(*local, noArray)) : std::nullopt;
}

std::optional<PropertyListDictionary> PreferencesFolder::domainDictionary(std::string_view domain) {
    const auto path = domain.find('/') == std::string_view::npos && !domain.empty()
                          ? pathInFolder(std::string(domain).append(propertyListSuffix))
                          : std::nullopt;
    return path ? valueOrAbsent(readAs<PropertyListDictionary>(*path, noDictionary)) : std::nullopt;
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
