// Every setting changed in the window, and seen in the file and by an agenda; undo.
#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/settings/settings_fixture.h"

namespace quorvel::window {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

struct Change {
    const char* key;
    std::function<void()> make;
    json value; // as the agenda has loaded it
};

class SettingsChangesTest : public SettingsTest {
protected:
    SettingsChangesTest() { writeThreeEvents(); }

    // The name of the toolkit's own button with this text; empty where there is none. Older
    // versions name it by its label and its text.
    std::string nameOfButton(const std::string& text) const {
        for (const std::string& name : {text, text + " " + text, "_" + text + " " + text}) {
            if (isThere(ATSPI_ROLE_PUSH_BUTTON, name)) {
                return name;
            }
        }
        return {};
    }

    static void writePicture(const std::string& file) {
        const std::array<unsigned char, 67> pixel{
            0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
            0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x06, 0x00, 0x00,
            0x00, 0x1F, 0x15, 0xC4, 0x89, 0x00, 0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78,
            0x9C, 0x63, 0x00, 0x01, 0x00, 0x00, 0x05, 0x00, 0x01, 0x0D, 0x0A, 0x2D, 0xB4, 0x00,
            0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(pixel.data()), pixel.size());
    }

    // What an agenda that is loaded now has in its settings.
    json loadedSettings() const { return json::parse(printed("inspect", {})).at("settings"); }

    void expectChange(const Change& change) const {
        change.make();
        ASSERT_TRUE(contentBecomes(change.key)) << change.key << '\n' << settingsContent();
        json loaded;
        EXPECT_TRUE(becomesTrue(20,
                                [&] {
                                    loaded = loadedSettings().at(change.key);
                                    return loaded == change.value;
                                }))
            << change.key << " is " << loaded;
    }
};

TEST_F(SettingsChangesTest, SwitchesAndNumbers) {
    openSettings();
    const auto switched = [this](const char* label) { return [this, label] { toggle(label); }; };
    const auto number = [this](const char* label, double value) {
        return [this, label, value] { setNumber(label, value); };
    };
    expectChange({"limitMaxHeight", switched("Limit the height"), true});
    setNumber("Largest height", 90);
    ASSERT_TRUE(contentBecomes("maxHeight"));
    const json size = json::parse(printed("inspect", {"--do", "size"})).at("steps").at(1);
    EXPECT_EQ(size.at("result").at(1), 90) << size;
    const std::vector<Change> changes{
        {"textSize", number("Title size", 21), 21},
        {"dateTextSize", number("Date size", 9), 9},
        {"showSeparatorLines", switched("Lines between rows"), false},
        {"rightAlignedDate", switched("Date at the right edge"), true},
        {"displayLocation", switched("Show locations"), true},
        {"sameHeightRows", switched("Rows of the same height"), false},
        {"subtitleTextSize", number("Location size", 11), 11},
        {"daysToDisplay", number("Days after today", 6), 6},
        {"maxEventsToDisplay", number("Largest number of events", 4), 4},
        {"onlySelectedCalendars", switched("Follow the calendar application"), false},
    };
    for (const Change& change : changes) {
        expectChange(change);
    }
}

TEST_F(SettingsChangesTest, ColoursAndChoices) {
    installHandler("Notes", "");
    writeSettings("<key>displayLocation</key><true/>");
    openSettings();
    const auto chosen = [this](const char* label, int itemsDown) {
        return [this, label, itemsDown] { choose(label, itemsDown); };
    };
    const json before = loadedSettings();
    const std::vector<Change> changes{
        {"textColor", chosen("Title colour", 11), 999}, // the last one
        {"subtitleTextColor", chosen("Location colour", 1), 0},
        {"dateTextColor", chosen("Date colour", 6), 5},
        {"swipeAction", chosen("Pull action", 4), 3}, // likewise
        {"iconFile", [this] { activate(ATSPI_ROLE_LIST_ITEM, "Large dot"); }, "DOT_LARGE"},
    };
    for (const Change& change : changes) {
        change.make();
        EXPECT_TRUE(contentBecomes(change.key)) << change.key;
    }
    openDialog([this] { activate(ATSPI_ROLE_LIST_ITEM, "Application to bring to the front"); });
    input({"type", "note"});
    ASSERT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "Notes"));
    activate(ATSPI_ROLE_LIST_ITEM, "Notes");
    EXPECT_TRUE(contentBecomes("<string>Notes</string>"));
    const json after = loadedSettings();
    EXPECT_EQ(after.at("swipeAction"), 3);
    EXPECT_EQ(after.at("iconFile"), "DOT_LARGE");
    EXPECT_EQ(after.at("customLaunchAppBundleID"), "Notes");
    for (const char* key : {"subtitleTextColor", "dateTextColor"}) {
        EXPECT_NE(after.at(key), before.at(key)) << key;
    }
    EXPECT_THAT(settingsContent(), HasSubstr("<integer>999</integer>"));
}

TEST_F(SettingsChangesTest, APictureFileMarksTheRows) {
    openSettings();
    const std::string picture = path("mark.png").string();
    writePicture(picture);
    openDialog([this] { press("Choose a Picture"); });
    ASSERT_TRUE(becomesTrue(20, [&] { return !nameOfButton("Open").empty(); }));
    input({"type", "/"}); // a path may be typed in place of a click
    rest(2);              // its entry appears
    input({"type", "--delay", "50", picture.substr(1)});
    rest(1);
    key("Return");
    EXPECT_TRUE(contentBecomes(picture)) << settingsContent();
}

TEST_F(SettingsChangesTest, TheRunningWindowFollows) {
    show();
    const Picture before = picture();
    openSettings();
    setNumber("Title size", 24);
    EXPECT_TRUE(pictureChangesFrom(before, 20));
    setNumber("Title size", 14);
    EXPECT_TRUE(pictureBecomes(before, 20));
}

// Every setting that changes the look of the list. The last event takes place after the days that
// are shown at first.
TEST_F(SettingsChangesTest, TheRunningWindowFollowsEachSettingOfItsLook) {
    writeCalendar(
        event("first", "Breakfast\r\nLOCATION:Kitchen", "20260310T110000Z", "20260310T120000Z") +
        event("second", "Lunch", "20260310T120000Z", "20260310T130000Z") +
        event("third", "Tea", "20260315T140000Z", "20260315T150000Z"));
    show();
    openSettings();
    const auto switched = [this](const char* label) { return [this, label] { toggle(label); }; };
    const auto number = [this](const char* label, double value) {
        return [this, label, value] { setNumber(label, value); };
    };
    const auto chosen = [this](const char* label, int itemsDown) {
        return [this, label, itemsDown] { choose(label, itemsDown); };
    };
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"displayLocation", switched("Show locations")},
        {"sameHeightRows", switched("Rows of the same height")},
        {"textSize", number("Title size", 21)},
        {"subtitleTextSize", number("Location size", 11)},
        {"dateTextSize", number("Date size", 9)},
        {"textColor", chosen("Title colour", 6)},
        {"subtitleTextColor", chosen("Location colour", 6)},
        {"dateTextColor", chosen("Date colour", 6)},
        {"rightAlignedDate", switched("Date at the right edge")},
        {"showSeparatorLines", switched("Lines between rows")},
        {"iconFile", [this] { activate(ATSPI_ROLE_LIST_ITEM, "Large dot"); }},
        {"daysToDisplay", number("Days after today", 6)},
        {"maxEventsToDisplay", number("Largest number of events", 2)},
        {"maxHeight", number("Largest height", 40)}, // shown by the next
        {"limitMaxHeight", switched("Limit the height")},
        {"onlySelectedCalendars", switched("Follow the calendar application")}, // likewise
        {"the calendar", switched("work")},
    };
    const std::array<std::string_view, 2> withTheNext{"maxHeight", "onlySelectedCalendars"};
    for (const auto& [key, make] : changes) {
        const Picture before = picture();
        make();
        if (std::ranges::find(withTheNext, key) == withTheNext.end()) {
            EXPECT_TRUE(pictureChangesFrom(before, 20)) << key;
            steadyPicture();
        }
    }
    EXPECT_EQ(errors(), "");
}

TEST_F(SettingsChangesTest, ARowOfTheRunningWindowPullsAsChosen) {
    installHandler("Notes", "");
    show();
    const auto pull = [this] { drag(60, 20, 60 + distanceForOffset(90), 20); };
    openSettings();
    choose("Pull action", 4); // the last one
    ASSERT_TRUE(contentBecomes("swipeAction"));
    openDialog([this] { activate(ATSPI_ROLE_LIST_ITEM, "Application to bring to the front"); });
    input({"type", "note"});
    ASSERT_TRUE(appears(ATSPI_ROLE_LIST_ITEM, "Notes"));
    activate(ATSPI_ROLE_LIST_ITEM, "Notes");
    ASSERT_TRUE(contentBecomes("<string>Notes</string>"));
    rest(1); // within which the window has to follow
    pull();
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre("Notes"));
    press("Reset “Pull action”");
    ASSERT_TRUE(contentLoses("swipeAction"));
    rest(1);
    pull();
    ASSERT_TRUE(opensLinks(2));
    EXPECT_THAT(opened().back(), HasSubstr("/first?"));
}

TEST_F(SettingsChangesTest, UndoesByKeyAndByTheOfferOfTheToast) {
    openSettings();
    toggle("Show locations");
    ASSERT_TRUE(contentBecomes("displayLocation"));
    choose("Title colour", 1);
    ASSERT_TRUE(contentBecomes("textColor"));
    focus(ATSPI_ROLE_LIST_ITEM, "Title size"); // the keyboard belongs to the window again
    key("ctrl+z");
    EXPECT_TRUE(contentLoses("textColor"));
    EXPECT_THAT(settingsContent(), HasSubstr("displayLocation"));
    key("ctrl+z");
    EXPECT_TRUE(contentLoses("displayLocation"));
    toggle("Show locations");
    ASSERT_TRUE(contentBecomes("displayLocation"));
    EXPECT_TRUE(becomesTrue(20, [&] {
        const std::string undo = nameOfButton("Undo");
        return !undo.empty() && tryAction(ATSPI_ROLE_PUSH_BUTTON, undo);
    }));
    EXPECT_TRUE(contentLoses("displayLocation"));
}

TEST_F(SettingsChangesTest, ResetsOneSettingAndAll) {
    writeSettings("<key>textSize</key><integer>20</integer><key>displayLocation</key><true/>"
                  "<key>other</key><true/>");
    openSettings();
    press("Reset “Title size”");
    EXPECT_TRUE(contentLoses("textSize"));
    EXPECT_TRUE(numberBecomes("Title size", 14));
    press("Reset All");
    EXPECT_TRUE(contentLoses("displayLocation"));
    EXPECT_THAT(settingsContent(), HasSubstr("<key>other</key>"));
    key("ctrl+z");
    EXPECT_TRUE(contentBecomes("displayLocation"));
}

TEST_F(SettingsChangesTest, ASecondProgramBringsTheWindowToTheFront) {
    openSettings();
    const std::size_t windows = m_display->windows().size();
    ChildProcess second({QUORVEL_SETTINGS, "--preferences", path("preferences").string()},
                        m_environment, path("second.log").string());
    EXPECT_EQ(second.exitStatus(20), 0);
    EXPECT_EQ(m_display->windows().size(), windows);
}

TEST_F(SettingsChangesTest, KeysCloseTheWindow) {
    // GTK 4.18 loses lists. By whole stacks the sanitizer knows these leaks from others.
    m_environment["ASAN_OPTIONS"] += ":fast_unwind_on_malloc=0";
    openSettings();
    key("ctrl+w");
    EXPECT_EQ(m_settings->exitStatus(20), 0);
}

} // namespace
} // namespace quorvel::window
