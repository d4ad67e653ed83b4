// Which calendars are chosen.
#include "freedesktop/preferences/calendar_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "freedesktop/preferences/settings_file.h"
#include "tests/freedesktop/preferences/preferences_fixture.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CalendarSelectionTest : public PreferencesFixture {
protected:
    void writeSettings(const std::string& pairs) const {
        write(std::string(settingsFileName), "<plist><dict>" + pairs + "</dict></plist>");
    }
    void writeSelection(const std::string& values) const {
        write(std::string(calendarSelectionFileName),
              "<plist><array>" + values + "</array></plist>");
    }
};

TEST_F(CalendarSelectionTest, FollowsTheDesktopWithoutFiles) {
    const auto selection = readCalendarSelection(m_folder.string());
    ASSERT_TRUE(selection);
    EXPECT_TRUE(selection->followsDesktop);
    EXPECT_THAT(selection->identifiers, IsEmpty());
}

TEST_F(CalendarSelectionTest, ListsTheChosenCalendars) {
    writeSettings("<key>onlySelectedCalendars</key><false/>");
    writeSelection("<string>home</string><integer>7</integer><true/><array/>");
    const auto selection = readCalendarSelection(m_folder.string());
    ASSERT_TRUE(selection);
    EXPECT_FALSE(selection->followsDesktop);
    EXPECT_THAT(selection->identifiers, ElementsAre("home", "7", "1"));
}

TEST_F(CalendarSelectionTest, NamesTheFileThatCannotBeRead) {
    write(std::string(calendarSelectionFileName), "<plist>\n<dict/></plist>");
    const auto selection = readCalendarSelection(m_folder.string());
    ASSERT_FALSE(selection);
    EXPECT_EQ(message(selection.error()),
              pathOf(std::string(calendarSelectionFileName)) +
                  ": it holds no array: mend the file, or move it away");
    write(std::string(settingsFileName), "<plist>\n<dict>");
    EXPECT_EQ(readCalendarSelection(m_folder.string()).error().where,
              pathOf(std::string(settingsFileName)) + ":2:7");
}

TEST_F(CalendarSelectionTest, WritesBothFiles) {
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {false, {"home", "work"}}));
    EXPECT_EQ(contentsOf(std::string(calendarSelectionFileName)),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<array>
    <string>home</string>
    <string>work</string>
</array>
</plist>
)");
    const auto selection = readCalendarSelection(m_folder.string());
    ASSERT_TRUE(selection);
    EXPECT_FALSE(selection->followsDesktop);
    EXPECT_THAT(selection->identifiers, ElementsAre("home", "work"));
}

TEST_F(CalendarSelectionTest, PreservesTheCommentsOfTheOthers) {
    writeSelection("\n  <string>a</string> <!-- A -->\n  <string>b</string> <!-- B -->\n"
                   "  <string>c</string>\n");
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {false, {"a", "c", "d"}}));
    EXPECT_EQ(contentsOf(std::string(calendarSelectionFileName)),
              "<plist><array>\n  <string>a</string> <!-- A --> <!-- B -->\n  <string>c</string>\n"
              "  <string>d</string>\n</array></plist>");
}

TEST_F(CalendarSelectionTest, FollowsTheDesktopAgain) {
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {false, {"home"}}));
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {true, {"home"}}));
    const auto selection = readCalendarSelection(m_folder.string());
    ASSERT_TRUE(selection);
    EXPECT_TRUE(selection->followsDesktop);
    EXPECT_THAT(selection->identifiers, ElementsAre("home"));
}

TEST_F(CalendarSelectionTest, WritesNothingForTheDefault) {
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {}));
    EXPECT_TRUE(std::filesystem::is_empty(m_folder));
}

TEST_F(CalendarSelectionTest, WritesTheFormOfTheFile) {
    write(std::string(calendarSelectionFileName), "( a, b )\n");
    ASSERT_TRUE(writeCalendarSelection(m_folder.string(), {false, {"a", "c d"}}));
    EXPECT_EQ(contentsOf(std::string(calendarSelectionFileName)), "(\"a\", \"c d\")\n");
}

TEST_F(CalendarSelectionTest, ChangesNothingIfAFileCannotBeRead) {
    write(std::string(settingsFileName), "torn <");
    EXPECT_FALSE(writeCalendarSelection(m_folder.string(), {false, {"home"}}));
    EXPECT_FALSE(std::filesystem::exists(pathOf(std::string(calendarSelectionFileName))));
}

} // namespace
} // namespace quorvel::freedesktop
