// Which settings depend on which others, and the order in which a page shows them.
#pragma once

#include <string_view>
#include <vector>

#include "freedesktop/preferences/setting_descriptions.h"

namespace quorvel::settings_pages {

class SettingsModel;

// Whether the widget uses the setting, given the values of the others.
bool hasEffect(std::string_view key, const SettingsModel& model);

// The groups of the table, in the order of the pages.
std::vector<std::string_view> settingGroups();

// The settings of a group in the order of the table, except that a setting which decides whether
// others have an effect precedes them.
std::vector<const freedesktop::SettingDescription*> settingsOfGroup(std::string_view group);

} // namespace quorvel::settings_pages
