// Values of settings as text, and which of them are wrong.
#include "freedesktop/preferences/setting_value.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListValue;

const SettingDescription& setting(std::string_view key) {
    return *settingDescription(key);
}

// The text of the parsed value, with its kind in front; or what is wrong.
std::string parsed(std::string_view key, std::string_view text) {
    const auto value = parseSettingValue(setting(key), text);
    if (!value) {
        return message(value.error());
    }
    return std::to_string(value->value.index()) + ' ' + settingText(*value);
}

std::string checked(std::string_view key, PropertyListValue value) {
    const auto error = checkSettingValue(setting(key), value);
    return error ? message(*error) : "";
}

// The kinds by their place in the variant.
constexpr const char* trueValue = "0 true";
constexpr const char* falseValue = "0 false";

TEST(SettingValue, ReadsBooleans) {
    for (const char* text : {"true", "yes", "on", "TRUE", "Yes", "oN"}) {
        EXPECT_EQ(parsed("displayLocation", text), trueValue) << text;
    }
    for (const char* text : {"false", "no", "off", "False", "NO"}) {
        EXPECT_EQ(parsed("displayLocation", text), falseValue) << text;
    }
    for (const char* text : {"", "1", "0", "ja", "true ", "truee"}) {
        EXPECT_EQ(parsed("displayLocation", text),
                  "displayLocation cannot be '" + std::string(text) + "': give true or false");
    }
}

TEST(SettingValue, ReadsNumbersWithinTheirLimits) {
    EXPECT_EQ(parsed("textSize", "1"), "1 1");
    EXPECT_EQ(parsed("textSize", "200"), "1 200");
    EXPECT_EQ(parsed("maxHeight", "300.5"), "2 300.5");
    EXPECT_EQ(parsed("maxHeight", "1e3"), "2 1000");
    for (const char* text :
         {"0", "201", "-3", "14.5", "14pt", " 14", "", "0x10", "+14", "99999999999999999999"}) {
        EXPECT_EQ(parsed("textSize", text), "textSize cannot be '" + std::string(text) +
                                                "': give a whole number from 1 to 200");
    }
    for (const char* text : {"0", "0.9", "10000.1", "nan", "inf", "-1", "1e400", "12,5"}) {
        EXPECT_EQ(parsed("maxHeight", text),
                  "maxHeight cannot be '" + std::string(text) + "': give a number from 1 to 10000");
    }
}

TEST(SettingValue, ReadsColoursByCodeAndName) {
    EXPECT_EQ(parsed("textColor", "red"), "1 0");
    EXPECT_EQ(parsed("textColor", "Brown"), "1 9");
    EXPECT_EQ(parsed("textColor", "7"), "1 7");
    EXPECT_EQ(parsed("textColor", "calendar"), "1 999");
    EXPECT_EQ(parsed("textColor", "999"), "1 999");
    const std::string list = "red, black, gray, white, green, blue, yellow, orange, purple, brown";
    EXPECT_EQ(parsed("textColor", "10"),
              "textColor cannot be '10': give one of " + list + ", calendar");
    EXPECT_EQ(parsed("dateTextColor", "calendar"),
              "dateTextColor cannot be 'calendar': give one of " + list);
    EXPECT_EQ(parsed("dateTextColor", "999"), "dateTextColor cannot be '999': give one of " + list);
}

TEST(SettingValue, ReadsChoicesByValueAndLabel) {
    EXPECT_EQ(parsed("swipeAction", "2"), "1 2");
    EXPECT_EQ(parsed("swipeAction", "open the event"), "1 1");
    EXPECT_EQ(parsed("swipeAction", "4"),
              "swipeAction cannot be '4': give one of 0 (Do nothing), 1 (Open the event), 2 (Open "
              "the day), 3 (Bring an application to the front)");
}

TEST(SettingValue, ReadsIconsAsWordsAndPaths) {
    EXPECT_EQ(parsed("iconFile", "dot_large"), "3 DOT_LARGE");
    EXPECT_EQ(parsed("iconFile", "no icon"), "3 NONE");
    EXPECT_EQ(parsed("iconFile", "calendar picture"),
              "3 /Applications/MobileCal.app/icon-about@2x.png");
    EXPECT_EQ(parsed("iconFile", "/home/me/Mark.png"), "3 /home/me/Mark.png");
    EXPECT_EQ(parsed("iconFile", "Mark.png"),
              "iconFile cannot be 'Mark.png': give the full path of a picture or one of DOT (Dot), "
              "DOT_LARGE (Large dot), NONE (No icon)");
}

TEST(SettingValue, ReadsTextsThatAFileCanHold) {
    EXPECT_EQ(parsed("customLaunchAppBundleID", ""), "3 ");
    EXPECT_EQ(parsed("customLaunchAppBundleID", "org.gnome.Calendar"), "3 org.gnome.Calendar");
    EXPECT_EQ(parsed("customLaunchAppBundleID", "\xC3\xA4<&>\""), "3 \xC3\xA4<&>\"");
    for (const char* text : {"\x01", "a\x1B[0m", "\xFF", "\xEF\xBF\xBF"}) {
        EXPECT_EQ(parsed("customLaunchAppBundleID", text),
                  "customLaunchAppBundleID cannot be '" + std::string(text) +
                      "': give a text in UTF-8 without control characters");
    }
}

TEST(SettingValue, NamesValuesOfTheWrongKind) {
    EXPECT_EQ(checked("textSize", {std::string("14")}),
              "textSize is a text: give a whole number from 1 to 200");
    EXPECT_EQ(checked("textSize", {14.0}),
              "textSize is a number: give a whole number from 1 to 200");
    EXPECT_EQ(checked("displayLocation", {std::int64_t{1}}),
              "displayLocation is a whole number: give true or false");
    EXPECT_EQ(checked("iconFile", {true}),
              "iconFile is a boolean: give the full path of a picture or one of DOT (Dot), "
              "DOT_LARGE (Large dot), NONE (No icon)");
    EXPECT_EQ(checked("maxHeight", {PropertyListArray()}),
              "maxHeight is an array: give a number from 1 to 10000");
    EXPECT_EQ(checked("daysToDisplay", {std::numeric_limits<std::uint64_t>::max()}),
              "daysToDisplay is a whole number: give a whole number from 0 to 3650");
}

TEST(SettingValue, NamesValuesThatAreOutOfRange) {
    EXPECT_EQ(checked("textSize", {std::int64_t{14}}), "");
    EXPECT_EQ(checked("textSize", {std::int64_t{0}}),
              "textSize cannot be '0': give a whole number from 1 to 200");
    EXPECT_EQ(checked("maxHeight", {std::int64_t{300}}), "");
    EXPECT_EQ(checked("maxHeight", {std::numeric_limits<double>::infinity()}),
              "maxHeight cannot be 'inf': give a number from 1 to 10000");
    EXPECT_EQ(checked("textColor", {std::int64_t{999}}), "");
    EXPECT_NE(checked("dateTextColor", {std::int64_t{999}}), "");
    EXPECT_EQ(checked("iconFile", {std::string("/x.png")}), "");
    EXPECT_NE(checked("iconFile", {std::string("dot")}), "");
    EXPECT_EQ(checked("customLaunchAppBundleID", {std::string("x")}), "");
}

TEST(SettingValue, NamesChoicesByTheirLabels) {
    EXPECT_EQ(settingLabel(setting("textColor"), {std::int64_t{999}}), "calendar");
    EXPECT_EQ(settingLabel(setting("swipeAction"), {std::int64_t{0}}), "Do nothing");
    EXPECT_EQ(settingLabel(setting("textSize"), {std::int64_t{14}}), std::nullopt);
    EXPECT_EQ(settingLabel(setting("textColor"), {std::int64_t{50}}), std::nullopt);
}

} // namespace
} // namespace quorvel::freedesktop
