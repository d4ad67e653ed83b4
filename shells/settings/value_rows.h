// The rows of switches, numbers, choices and colours.
#pragma once

#include <memory>

#include "shells/settings/setting_row.h"

namespace quorvel::settings_pages {

// The row that suits the kind of the setting. Texts without choices have rows of their own.
std::unique_ptr<SettingRow> makeValueRow(const freedesktop::SettingDescription& setting,
                                         SettingsModel& model);

} // namespace quorvel::settings_pages
