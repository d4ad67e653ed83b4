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

} // namespace
} // namespace quorvel::freedesktop
