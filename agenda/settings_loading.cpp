#include "agenda/settings_loading.h"

#include <optional>

#include "agenda/color_codes.h"
#include "agenda/row_icon.h"
#include "agenda/settings.h"
#include "agenda/settings_store.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr std::int32_t defaultFontSize = 14;

UIColor colorSetting(const PropertyListDictionary& dictionary, SettingKey key,
                     const UIColor& defaultColor) {
    const auto code = integerSetting(dictionary, key);
    return code ? colorForCode(*code) : defaultColor;
}

void loadTextColor(const PropertyListDictionary& dictionary) {
    if (const auto code = integerSetting(dictionary, SettingKey::textColor)) {
        settings::titleColorSameAsCalendarColor = *code == calendarColorCode;
    }
    settings::textColor = colorSetting(dictionary, SettingKey::textColor, UIColor::whiteColor());
}

} // namespace

void loadLimitMaxHeight(const PropertyListDictionary& dictionary) {
    settings::limitMaxHeight = boolSetting(dictionary, SettingKey::limitMaxHeight, false);
}

void loadListSettings(const PropertyListDictionary& dictionary) {
    settings::customLaunchAppBundleID =
        stringSetting(dictionary, SettingKey::customLaunchAppBundleID).value_or(std::string());
    settings::showSeparatorLines = boolSetting(dictionary, SettingKey::showSeparatorLines, true);
    settings::rightAlignedDate = boolSetting(dictionary, SettingKey::rightAlignedDate, false);
    settings::onlySelectedCalendars =
        boolSetting(dictionary, SettingKey::onlySelectedCalendars, true);
    settings::displayLocation = boolSetting(dictionary, SettingKey::displayLocation, false);
    settings::sameHeightRows = boolSetting(dictionary, SettingKey::sameHeightRows, true);
}

std::int64_t loadedSwipeAction(const PropertyListDictionary& dictionary) {
    const std::int64_t stored = integerSetting(dictionary, SettingKey::swipeAction).value_or(1);
    return stored >= 0 && stored <= 3 ? stored : 1;
}

void loadRowSettings(const PropertyListDictionary& dictionary) {
    loadTextColor(dictionary);
    settings::textSize = intSetting(dictionary, SettingKey::textSize, defaultFontSize);
    settings::subtitleTextColor =
        colorSetting(dictionary, SettingKey::subtitleTextColor, UIColor::grayColor());
    settings::subtitleTextSize =
        intSetting(dictionary, SettingKey::subtitleTextSize, defaultFontSize);
    settings::dateTextColor =
        colorSetting(dictionary, SettingKey::dateTextColor, UIColor::grayColor());
    settings::dateTextSize = intSetting(dictionary, SettingKey::dateTextSize, defaultFontSize);
}

std::vector<std::string> chosenColors(const PropertyListDictionary& dictionary) {
    std::vector<std::string> names;
    for (const SettingKey key :
         {SettingKey::textColor, SettingKey::subtitleTextColor, SettingKey::dateTextColor}) {
        if (integerSetting(dictionary, key)) {
            names.emplace_back(settingKeyName(key));
        }
    }
    return names;
}

void loadGatheringSettings(const PropertyListDictionary& dictionary) {
    settings::daysToDisplay = intSetting(dictionary, SettingKey::daysToDisplay, 2);
    settings::maxEventsToDisplay = intSetting(dictionary, SettingKey::maxEventsToDisplay, 0);
}

void loadIconFile(const PropertyListDictionary& dictionary) {
    settings::iconFile = stringSetting(dictionary, SettingKey::iconFile);
    if (!settings::iconFile) {
        settings::iconFile = std::string(defaultIconFile);
        settings::iconRoundingNeeded = true;
    }
}

} // namespace quorvel
