#include "agenda/settings_store.h"

#include <cmath>

#include "platform/preferences.h"
#include "platform/system_log.h"

namespace quorvel {

using namespace platform;

namespace {

// The last Foundation under which the settings file itself is up to date; newer ones store the
// values in the preferences service.
constexpr double lastFoundationReadFromFile = 1047.25;

std::optional<PropertyListDictionary> readThroughService(Preferences& preferences,
                                                         SystemLog& systemLog) {
    const auto keys = preferences.copyKeyList(settingsDomain);
    if (!keys) {
        systemLog.log("QRV: unable to get preferences");
        return std::nullopt;
    }
    auto dictionary = preferences.copyMultiple(*keys, settingsDomain);
    if (!dictionary) {
        systemLog.log("QRV: preferences dictionary error");
    }
    return dictionary;
}

PropertyListDictionary readFromFile(Preferences& preferences, SystemLog& systemLog) {
    auto dictionary = preferences.dictionaryWithContentsOfFile(settingsFilePath);
    if (!dictionary) {
        systemLog.log("QRV: unable to load preferences.");
        return {};
    }
    return *std::move(dictionary);
}

const PropertyListValue* lookUp(const PropertyListDictionary& dictionary, SettingKey key) {
    return objectForKey(dictionary, settingKeyName(key));
}

} // namespace

std::optional<PropertyListDictionary> readSettings(Preferences& preferences, SystemLog& systemLog) {
    if (std::floor(preferences.foundationVersionNumber()) > lastFoundationReadFromFile) {
        return readThroughService(preferences, systemLog);
    }
    return readFromFile(preferences, systemLog);
}

bool boolSetting(const PropertyListDictionary& dictionary, SettingKey key, bool defaultValue) {
    const PropertyListValue* value = lookUp(dictionary, key);
    return value != nullptr ? boolValue(*value) : defaultValue;
}

std::int64_t intSetting(const PropertyListDictionary& dictionary, SettingKey key,
                        std::int32_t defaultValue) {
    const PropertyListValue* value = lookUp(dictionary, key);
    return value != nullptr ? intValue(*value) : defaultValue;
}

std::optional<std::int64_t> integerSetting(const PropertyListDictionary& dictionary,
                                           SettingKey key) {
    const PropertyListValue* value = lookUp(dictionary, key);
    return value != nullptr ? std::optional(integerValue(*value)) : std::nullopt;
}

double floatSetting(const PropertyListDictionary& dictionary, SettingKey key, float defaultValue) {
    const PropertyListValue* value = lookUp(dictionary, key);
    return static_cast<double>(value != nullptr ? floatValue(*value) : defaultValue);
}

std::optional<std::string> stringSetting(const PropertyListDictionary& dictionary, SettingKey key) {
    const PropertyListValue* value = lookUp(dictionary, key);
    return value != nullptr ? std::optional(stringValue(*value).value_or(std::string()))
                            : std::nullopt;
}

} // namespace quorvel
