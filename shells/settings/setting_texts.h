// The texts of the settings' table as the pages show them.
#pragma once

#include <string>
#include <string_view>

#include "freedesktop/preferences/setting_descriptions.h"

namespace quorvel::settings_pages {

std::string labelOf(const freedesktop::SettingDescription& setting);
// The pages name other settings by their labels instead of their keys.
std::string meaningOf(const freedesktop::SettingDescription& setting);
std::string labelOf(const freedesktop::SettingChoice& choice);

// The text with each word that is a key of the table replaced by the label of that setting, in
// quotation marks.
std::string withLabelsForKeys(std::string_view text);

// Of a group of settings such as "look"; the name itself for an unknown group.
std::string groupTitle(std::string_view group);

} // namespace quorvel::settings_pages
