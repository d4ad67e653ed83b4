// The calendars of the window, and its first page for a user who has none.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "tests/settings/settings_fixture.h"

namespace quorvel::window {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class SettingsCalendarsTest : public SettingsTest {
protected:
    void addCalendar(const std::string& name, const std::string& title) const {
        std::ofstream(path("calendars/" + name + ".ics"))
            << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:" + name + "\r\n" +
                   event(name, title, "20260310T110000Z", "20260310T120000Z") + "END:VCALENDAR\r\n";
    }
    bool isOn(const std::string& calendar) const {
        const Accessible found = control(ATSPI_ROLE_CHECK_BOX, calendar);
        return found && hasState(found.get(), ATSPI_STATE_CHECKED);
    }
};

TEST_F(SettingsCalendarsTest, ChoosesOneOfThem) {
    addCalendar("Home", "Gardening");
    addCalendar("Office", "Meeting");
    openSettings();
    ASSERT_TRUE(appears(ATSPI_ROLE_CHECK_BOX, "Office"));
    EXPECT_TRUE(isOn("Home"));
    EXPECT_TRUE(becomesSensitive(ATSPI_ROLE_LIST_ITEM, "Home", false));
    toggle("Follow the calendar application");
    ASSERT_TRUE(contentBecomes("onlySelectedCalendars"));
    EXPECT_THAT(printed("agenda", {}), AllOf(HasSubstr("Gardening"), HasSubstr("Meeting")));
    EXPECT_TRUE(becomesSensitive(ATSPI_ROLE_LIST_ITEM, "Home", true));
    toggle("Home");
    EXPECT_TRUE(becomesTrue(
        20, [&] { return printed("agenda", {}).find("Gardening") == std::string::npos; }));
    EXPECT_THAT(printed("agenda", {}), HasSubstr("Meeting"));
    EXPECT_FALSE(isOn("Home"));
    EXPECT_TRUE(isOn("Office"));
    key("ctrl+z");
    EXPECT_TRUE(becomesTrue(
        20, [&] { return printed("agenda", {}).find("Gardening") != std::string::npos; }));
    key("ctrl+z");
    EXPECT_TRUE(contentLoses("onlySelectedCalendars"));
}

TEST_F(SettingsCalendarsTest, AUserWithoutCalendarsIsTakenByTheHand) {
    openSettings();
    EXPECT_TRUE(appears(ATSPI_ROLE_PUSH_BUTTON, "Go to the Settings"));
    EXPECT_TRUE(isThere(ATSPI_ROLE_PUSH_BUTTON, "Open the Guide"));
    addCalendar("Home", "Gardening");
    press("Go to the Settings");
    EXPECT_FALSE(isThere(ATSPI_ROLE_LABEL, "Add Calendars"));
    const std::size_t windows = m_display->windows().size();
    openDialog([this] { activate(ATSPI_ROLE_LIST_ITEM, "How to Add Calendars"); });
    EXPECT_TRUE(appears(ATSPI_ROLE_LABEL, "Add Calendars"));
    key("Escape");
    EXPECT_TRUE(becomesTrue(20, [&] { return m_display->windows().size() == windows; }));
}

} // namespace
} // namespace quorvel::window
