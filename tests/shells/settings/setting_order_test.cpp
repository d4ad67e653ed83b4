// The texts and the order of the settings on a page.
#include "shells/settings/setting_order.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::settings_pages {
namespace {

using freedesktop::SettingDescription;

std::vector<std::string_view> keysOfGroup(std::string_view group) {
    std::vector<std::string_view> keys;
    for (const SettingDescription* const setting : settingsOfGroup(group)) {
        keys.push_back(setting->key);
    }
    return keys;
}

TEST(SettingOrder, EverySettingIsInAGroupWithATitle) {
    std::vector<std::string_view> keys;
    for (const std::string_view group : settingGroups()) {
        EXPECT_NE(groupTitle(group), group);
        std::ranges::copy(keysOfGroup(group), std::back_inserter(keys));
    }
    std::vector<std::string_view> expected;
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        expected.push_back(setting.key);
    }
    EXPECT_THAT(keys, testing::UnorderedElementsAreArray(expected));
}

TEST(SettingOrder, WhatDecidesOverOthersPrecedesThem) {
    EXPECT_THAT(keysOfGroup("pull"),
                testing::ElementsAre("swipeAction", "customLaunchAppBundleID"));
    const auto look = keysOfGroup("look");
    EXPECT_EQ(look.at(0), "limitMaxHeight");
    EXPECT_EQ(look.at(1), "maxHeight");
}

TEST(SettingOrder, SomeSettingsHaveAnEffectOnlyWithOthers) {
    const testing_session::TemporaryFolder folder;
    SettingsModel model(folder.path().string());
    EXPECT_TRUE(hasEffect("textSize", model));
    EXPECT_FALSE(hasEffect("maxHeight", model));
    EXPECT_FALSE(hasEffect("customLaunchAppBundleID", model));
    model.set(*freedesktop::settingDescription("limitMaxHeight"), "true");
    model.set(*freedesktop::settingDescription("swipeAction"), "3");
    EXPECT_TRUE(hasEffect("maxHeight", model));
    EXPECT_TRUE(hasEffect("customLaunchAppBundleID", model));
    EXPECT_FALSE(hasEffect("subtitleTextSize", model));
}

TEST(SettingTexts, NameOtherSettingsByTheirLabels) {
    EXPECT_EQ(withLabelsForKeys("At textSize, not textSizes; maxHeight"),
              "At “Title size”, not textSizes; “Largest height”");
    EXPECT_EQ(withLabelsForKeys(""), "");
    EXPECT_EQ(withLabelsForKeys("größer"), "größer");
}

} // namespace
} // namespace quorvel::settings_pages
