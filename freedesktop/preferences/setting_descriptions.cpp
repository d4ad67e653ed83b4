#include "freedesktop/preferences/setting_descriptions.h"

#include <algorithm>

namespace quorvel::freedesktop {

const SettingDescription* settingDescription(std::string_view key) {
    const auto settings = settingDescriptions();
    const auto found = std::ranges::find(settings, key, &SettingDescription::key);
    return found == settings.end() ? nullptr : &*found;
}

} // namespace quorvel::freedesktop
