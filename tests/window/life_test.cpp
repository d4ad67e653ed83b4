// When the window presents its widget again, and how it ends.
#include <filesystem>
#include <fstream>
#include <functional>

#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;

// The window shows a change within a second. Other programs may use the processors for longer than
// that, so each test has several attempts.
constexpr double soon = 1;
constexpr int attempts = 4;

class LifeTest : public WindowTest {
protected:
    // `isShown` makes a change, a different one for each attempt, and returns whether it was shown.
    static bool isOnceShownInTime(const std::function<bool(int attempt)>& isShown) {
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (isShown(attempt)) {
                return true;
            }
            rest(1);
        }
        return false;
    }
};

TEST_F(LifeTest, TheRowsChangeAtMidnight) {
    writeCalendar(event("a", "Late", "20260311T110000Z", "20260311T120000Z"));
    const Picture tomorrow = pictureAt("2026-03-10T22:00:00Z");
    const Picture today = pictureAt("2026-03-11T00:01:00Z");
    ASSERT_NE(tomorrow, today);
    showBeforeEndOf("23:59", tomorrow);
    EXPECT_TRUE(pictureBecomes(today, 65));
}

TEST_F(LifeTest, AnEventDisappearsWhenItEnds) {
    writeThreeEvents();
    const Picture three = pictureAt("2026-03-10T11:58:00Z");
    const Picture two = pictureAt("2026-03-10T12:01:00Z");
    ASSERT_EQ(two.height, three.height / 3 * 2);
    showBeforeEndOf("11:59", three);
    EXPECT_TRUE(pictureBecomes(two, 65));
}

TEST_F(LifeTest, AReplacedSettingsFileIsShownWithinASecond) {
    writeThreeEvents();
    show();
    EXPECT_TRUE(isOnceShownInTime([this](int attempt) {
        const Picture before = picture();
        writeSettings("<key>textSize</key><integer>" + std::to_string(20 + attempt) + "</integer>");
        return pictureChangesFrom(before, soon);
    }));
}

TEST_F(LifeTest, AReplacedCalendarIsShownWithinASecond) {
    writeThreeEvents();
    show();
    const int rowHeight = picture().height / 3;
    EXPECT_TRUE(isOnceShownInTime([this, rowHeight](int attempt) {
        const int rows = attempt % 2 == 0 ? 1 : 3;
        rows == 1 ? writeCalendar(event("one", "Breakfast", "20260310T110000Z", "20260310T120000Z"))
                  : writeThreeEvents();
        return becomesTrue(soon, [&] { return picture().height == rows * rowHeight; });
    }));
}

// The file changes through a hard link outside the watched folder, so the window is not notified.
TEST_F(LifeTest, F5PresentsAgain) {
    std::filesystem::create_directory(path("elsewhere"));
    const auto original = path("elsewhere/hidden.ics");
    const auto write = [&](const std::string& title) {
        std::ofstream(original) << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
                                << event("a", title, "20260310T110000Z", "20260310T120000Z")
                                << "END:VCALENDAR\r\n";
    };
    write("Before");
    std::filesystem::create_hard_link(original, path("calendars/linked.ics"));
    show();
    const Picture before = picture();
    write("After all");
    rest(1);
    EXPECT_EQ(picture(), before);
    key("F5");
    EXPECT_TRUE(pictureChangesFrom(before, 5));
}

TEST_F(LifeTest, ReportsAMissingDisplay) {
    m_environment.erase("DISPLAY");
    ChildProcess program({QUORVEL_PROGRAM, "show", "--sample"}, m_environment,
                         path("errors").string());
    EXPECT_EQ(program.exitStatus(20), 2);
    EXPECT_THAT(errors(), HasSubstr("quorvel: there is no display"));
}

TEST_F(LifeTest, EndsWhenTheDisplayIsLost) {
    writeThreeEvents();
    show();
    m_display->end();
    EXPECT_EQ(m_program->exitStatus(10), 1);
    EXPECT_EQ(errors(), "quorvel: the display has gone away: start the window again where there is "
                        "one\n");
}

TEST_F(LifeTest, AnEmptyAgendaShowsOneLine) {
    writeCalendar("");
    show({"--background", "#102030"});
    const Picture empty = picture();
    EXPECT_EQ(empty.width, 320);
    EXPECT_EQ(empty.height, 300); // the greatest height of the settings
    EXPECT_THAT(empty.band(0, 135).pixels, Each(0x102030));
    EXPECT_THAT(empty.band(135, 30).pixels, Contains(testing::Ne(0x102030U)));
    EXPECT_THAT(empty.band(165, 135).pixels, Each(0x102030));
}

TEST_F(LifeTest, ReportsThatTheCalendarsCannotBeRead) {
    writeCalendar("");
    const Picture empty = pictureAt("2026-03-10T10:00:00Z");
    std::filesystem::remove_all(path("calendars"));
    std::filesystem::create_directory(path("calendars"));
    show();
    EXPECT_NE(picture(), empty);
}

TEST_F(LifeTest, ShowsEachController) {
    writeThreeEvents();
    show({"--controller", "QuorvelViewControllerNewToday"});
    EXPECT_EQ(picture().height, 270);
    endProgram();
    show({"--controller", "QuorvelViewController"});
    EXPECT_EQ(picture().height, 70);
    EXPECT_EQ(picture().width, 320);
}

TEST_F(LifeTest, ShowsTheSample) {
    showWith({"show", "--sample"});
    EXPECT_EQ(picture().width, 320);
    EXPECT_EQ(errors(), "");
}

} // namespace
} // namespace quorvel::window
