// Reading the settings: the dictionary from its file or through the preferences service, and its
// values, each with the default that an absent key takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "agenda/setting_keys.h"
#include "platform/property_list.h"

namespace quorvel::platform {
class Preferences;
class SystemLog;
} // namespace quorvel::platform

namespace quorvel {

inline constexpr std::string_view settingsDomain = "org.quorvel.quorvelprefs";
inline constexpr std::string_view settingsFilePath =
    "/var/mobile/Library/Preferences/org.quorvel.quorvelprefs.plist";

// Reads the store anew. Nothing where the preferences service has no list of keys or no values: the
// caller then leaves its settings unchanged. A file that cannot be read gives an empty dictionary.
// Each of the three cases is logged.
std::optional<platform::PropertyListDictionary> readSettings(platform::Preferences& preferences,
                                                             platform::SystemLog& systemLog);

// A value of another kind is converted, never refused.
bool boolSetting(const platform::PropertyListDictionary& dictionary, SettingKey key,
                 bool defaultValue);
// Read in 32 bits, then widened.
std::int64_t intSetting(const platform::PropertyListDictionary& dictionary, SettingKey key,
                        std::int32_t defaultValue);
// Read in 64 bits; nothing for an absent key.
std::optional<std::int64_t> integerSetting(const platform::PropertyListDictionary& dictionary,
                                           SettingKey key);
// Points.
double floatSetting(const platform::PropertyListDictionary& dictionary, SettingKey key,
                    float defaultValue);
// Nothing for an absent key; a number gives its text, anything else that is no text the empty one.
std::optional<std::string> stringSetting(const platform::PropertyListDictionary& dictionary,
                                         SettingKey key);

} // namespace quorvel
