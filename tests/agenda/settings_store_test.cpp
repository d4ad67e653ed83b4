#include "agenda/settings_store.h"

#include <gmock/gmock.h>

#include <limits>

#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

class SettingsStoreTest : public AgendaFixture {
protected:
    std::optional<PropertyListDictionary> read() {
        return readSettings(memory.preferences, memory.systemLog);
    }

    const std::string domain{settingsDomain};
};

TEST_F(SettingsStoreTest, ReadsTheFileUpToFoundation1047) {
    setSettings({{"textSize", plist(20)}});
    for (const double version : {0.0, 1047.25, 1047.99}) {
        memory.preferences.foundationVersion = version;
        memory.preferences.reads.clear();
        const auto dictionary = read();
        ASSERT_TRUE(dictionary);
        EXPECT_EQ(dictionary->size(), 1U);
        EXPECT_THAT(memory.preferences.reads,
                    ElementsAre("dictionary /var/mobile/Library/Preferences/"
                                "org.quorvel.quorvelprefs.plist"));
    }
    EXPECT_THAT(memory.systemLog.lines, IsEmpty());
}

TEST_F(SettingsStoreTest, ReadsThroughTheServiceFromFoundation1048) {
    setSettings({{"textSize", plist(20)}});
    memory.preferences.setDomain(domain, {{"textSize", plist(30)}, {"iconFile", plist("DOT")}});
    memory.preferences.foundationVersion = 1048;
    const auto dictionary = read();
    ASSERT_TRUE(dictionary);
    EXPECT_EQ(dictionary->size(), 2U);
    EXPECT_EQ(intSetting(*dictionary, SettingKey::textSize, 0), 30);
    EXPECT_THAT(memory.preferences.reads, ElementsAre("keyList org.quorvel.quorvelprefs",
                                                      "multiple org.quorvel.quorvelprefs"));
}

TEST_F(SettingsStoreTest, GivesNoKeysForAMissingFile) {
    const auto dictionary = read();
    ASSERT_TRUE(dictionary);
    EXPECT_TRUE(dictionary->empty());
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to load preferences."));
}

TEST_F(SettingsStoreTest, GivesNoKeysForAFileOfAnotherKind) {
    memory.preferences.files[std::string(settingsFilePath)] = PropertyListArray{plist(1)};
    ASSERT_TRUE(read());
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to load preferences."));
}

TEST_F(SettingsStoreTest, StopsWithoutAKeyList) {
    memory.preferences.foundationVersion = 1140.11;
    EXPECT_FALSE(read());
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: unable to get preferences"));
    EXPECT_THAT(memory.preferences.reads, ElementsAre("keyList org.quorvel.quorvelprefs"));
}

TEST_F(SettingsStoreTest, StopsWithoutValues) {
    memory.preferences.foundationVersion = 1140.11;
    memory.preferences.domains[domain].keyList = std::vector<std::string>{"textSize"};
    EXPECT_FALSE(read());
    EXPECT_THAT(memory.systemLog.lines, ElementsAre("QRV: preferences dictionary error"));
}

TEST(SettingLookup, TakesTheDefaultForAnAbsentKey) {
    const PropertyListDictionary empty;
    EXPECT_TRUE(boolSetting(empty, SettingKey::showSeparatorLines, true));
    EXPECT_FALSE(boolSetting(empty, SettingKey::showSeparatorLines, false));
    EXPECT_EQ(intSetting(empty, SettingKey::textSize, 14), 14);
    EXPECT_EQ(integerSetting(empty, SettingKey::textColor), std::nullopt);
    EXPECT_EQ(floatSetting(empty, SettingKey::maxHeight, 300), 300.0);
    EXPECT_EQ(stringSetting(empty, SettingKey::iconFile), std::nullopt);
}

TEST(SettingLookup, ReadsNumbersAndTextsAlike) {
    const auto height = [](const PropertyListValue& value) {
        return floatSetting({{"maxHeight", value}}, SettingKey::maxHeight, 300);
    };
    EXPECT_EQ(height(plist(250.5)), 250.5);
    EXPECT_EQ(height(plist("250.5")), 250.5);
    EXPECT_EQ(height(plist(200)), 200.0);
    EXPECT_EQ(height(plist("none")), 0.0);
}

TEST(SettingLookup, ReadsIntegersIn32BitsAndCodesIn64) {
    const PropertyListDictionary large{
        {"textSize", {std::int64_t{4294967301}}}, // 2^32 + 5
        {"textColor", {std::int64_t{4294967301}}},
    };
    EXPECT_EQ(intSetting(large, SettingKey::textSize, 14), 5);
    EXPECT_EQ(integerSetting(large, SettingKey::textColor), 4294967301);
    const PropertyListDictionary text{{"daysToDisplay", plist("99999999999")}};
    EXPECT_EQ(intSetting(text, SettingKey::daysToDisplay, 2),
              std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(intSetting({{"daysToDisplay", plist(-3)}}, SettingKey::daysToDisplay, 2), -3);
}

TEST(SettingLookup, ConvertsValuesOfTheWrongKind) {
    const std::array<PropertyListValue, 4> odd{
        PropertyListValue{NSDate{5}}, PropertyListValue{PropertyListData{std::byte{49}}},
        PropertyListValue{PropertyListArray{plist(7)}},
        PropertyListValue{PropertyListDictionary{{"a", plist(7)}}}};
    for (const PropertyListValue& value : odd) {
        EXPECT_FALSE(boolSetting({{"displayLocation", value}}, SettingKey::displayLocation, true));
        EXPECT_EQ(intSetting({{"textSize", value}}, SettingKey::textSize, 14), 0);
        EXPECT_EQ(integerSetting({{"textColor", value}}, SettingKey::textColor), 0);
        EXPECT_EQ(floatSetting({{"maxHeight", value}}, SettingKey::maxHeight, 300), 0.0);
        EXPECT_EQ(stringSetting({{"iconFile", value}}, SettingKey::iconFile), "");
    }
    EXPECT_EQ(stringSetting({{"iconFile", plist(12)}}, SettingKey::iconFile), "12");
    EXPECT_TRUE(stringSetting({{"iconFile", plist(true)}}, SettingKey::iconFile));
    EXPECT_TRUE(
        boolSetting({{"displayLocation", plist("yes")}}, SettingKey::displayLocation, false));
    EXPECT_EQ(intSetting({{"textSize", plist(true)}}, SettingKey::textSize, 14), 1);
}

} // namespace
} // namespace quorvel
