// The tables of settings and colours as values. tests/hosting/settings_table_test.cpp holds the
// tables themselves against the widget.
#include "freedesktop/preferences/setting_descriptions.h"

#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "freedesktop/preferences/setting_value.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;

TEST(SettingDescriptions, HaveUniqueKeysAndRightDefaults) {
    std::set<std::string_view> keys;
    for (const SettingDescription& setting : settingDescriptions()) {
        EXPECT_TRUE(keys.insert(setting.key).second) << setting.key;
        const auto value = parseSettingValue(setting, setting.defaultValue);
        ASSERT_TRUE(value) << setting.key;
        EXPECT_EQ(settingText(*value), setting.defaultValue) << setting.key;
        EXPECT_EQ(checkSettingValue(setting, *value), std::nullopt) << setting.key;
    }
    EXPECT_EQ(keys.size(), 18U);
}

TEST(SettingDescriptions, HaveTheColumnsOfTheTable) {
    const SettingDescription* const size = settingDescription("textSize");
    ASSERT_NE(size, nullptr);
    EXPECT_EQ(size->kind, SettingKind::integer);
    EXPECT_EQ(size->least, 1);
    EXPECT_EQ(size->most, 200);
    EXPECT_TRUE(size->choices.empty());
    EXPECT_EQ(size->defaultValue, "14");
    EXPECT_EQ(size->group, "look");
    EXPECT_EQ(size->label, "Title size");
    EXPECT_EQ(size->meaning, "The size of the title, in points.");
}

TEST(SettingDescriptions, HaveTheChoicesOfTheTable) {
    const SettingDescription* const icon = settingDescription("iconFile");
    ASSERT_NE(icon, nullptr);
    EXPECT_TRUE(icon->takesPaths);
    std::vector<std::string> labels;
    for (const SettingChoice& choice : icon->choices) {
        labels.emplace_back(choice.label);
    }
    EXPECT_THAT(labels, ElementsAre("Calendar picture", "Dot", "Large dot", "No icon"));
    EXPECT_EQ(icon->least, std::nullopt);
}

TEST(SettingDescriptions, OfferTheCalendarsColourForTitlesOnly) {
    EXPECT_EQ(settingDescription("textColor")->choices.size(), 11U);
    EXPECT_EQ(settingDescription("textColor")->choices.back().value, "999");
    EXPECT_EQ(settingDescription("dateTextColor")->choices.size(), 10U);
}

TEST(SettingDescriptions, LackAnUnknownKey) {
    EXPECT_EQ(settingDescription("textsize"), nullptr);
    EXPECT_EQ(settingDescription(""), nullptr);
}

TEST(ColourCodes, HaveNamesAndComponents) {
    ASSERT_EQ(colourCodes().size(), 11U);
    const ColourCode& brown = colourCodes()[9];
    EXPECT_EQ(brown.code, 9);
    EXPECT_EQ(brown.name, "brown");
    ASSERT_TRUE(brown.rgba);
    EXPECT_THAT(*brown.rgba, ElementsAre(0x99, 0x66, 0x33, 0xFF));
    EXPECT_EQ(colourCodes().back().code, 999);
    EXPECT_EQ(colourCodes().back().rgba, std::nullopt);
}

} // namespace
} // namespace quorvel::freedesktop
