// Every key that the widget reads from the settings, in the order of reading. A lookup takes a
// SettingKey, so that no key can be read that is missing here (and in data/settings.tsv).
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace quorvel {

enum class SettingKey : std::size_t {
    maxHeight,
    limitMaxHeight,
    customLaunchAppBundleID,
    showSeparatorLines,
    rightAlignedDate,
    onlySelectedCalendars,
    displayLocation,
    sameHeightRows,
    swipeAction,
    textColor,
    textSize,
    subtitleTextColor,
    subtitleTextSize,
    dateTextColor,
    dateTextSize,
    daysToDisplay,
    maxEventsToDisplay,
    iconFile,
};

// In the order of the enumerators.
inline constexpr auto settingKeyNames = std::to_array<std::string_view>({
    "maxHeight",
    "limitMaxHeight",
    "customLaunchAppBundleID",
    "showSeparatorLines",
    "rightAlignedDate",
    "onlySelectedCalendars",
    "displayLocation",
    "sameHeightRows",
    "swipeAction",
    "textColor",
    "textSize",
    "subtitleTextColor",
    "subtitleTextSize",
    "dateTextColor",
    "dateTextSize",
    "daysToDisplay",
    "maxEventsToDisplay",
    "iconFile",
});
static_assert(settingKeyNames.size() == static_cast<std::size_t>(SettingKey::iconFile) + 1);

constexpr std::string_view settingKeyName(SettingKey key) {
    return settingKeyNames[static_cast<std::size_t>(key)];
}

} // namespace quorvel
