// The settings as text and as JSON.
#pragma once

#include <string>
#include <vector>

#include "freedesktop/preferences/setting_descriptions.h"
#include "platform/property_list.h"

namespace quorvel::headless {

struct ListedSetting {
    const freedesktop::SettingDescription* description = nullptr; // never null
    platform::PropertyListValue value;                            // the stored one or the default
    bool isSet = false;                                           // the file has it
};

std::string settingsText(const std::vector<ListedSetting>& settings);

// A JSON array of {"key", "type", "value", "default", "isSet", "group", "label", "meaning"}, of
// numbers also "least" and "most", of settings with choices {"value", "label"} also "choices". A
// value of the wrong kind is a text.
std::string settingsDocument(const std::vector<ListedSetting>& settings);
// One of these objects.
std::string settingDocument(const ListedSetting& setting);

} // namespace quorvel::headless
