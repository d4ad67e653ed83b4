// When the window presents its widget again by itself, and how it ends.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::HasSubstr;

// A change is to be seen within a second.
constexpr double soon = 1;

class LifeTest : public WindowTest {
protected:
    std::string log() const {
        std::ifstream file(path("log"));
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

TEST_F(LifeTest, TheRowsChangeAtMidnight) {
    writeCalendar(event("a", "Late", "20260311T110000Z", "20260311T120000Z"));
    show({}, "2026-03-10T23:59:57Z");
    const Picture tomorrow = steadyPicture();
    EXPECT_TRUE(pictureChangesFrom(tomorrow, 10)); // it is today's now
}

TEST_F(LifeTest, AnEventGoesWhenItEnds) {
    writeThreeEvents();
    show({}, "2026-03-10T11:59:57Z");
    const int height = picture().height;
    EXPECT_TRUE(becomesTrue(10, [&] { return picture().height == height / 3 * 2; }));
}

TEST_F(LifeTest, ASettingsFileThatIsReplacedIsSeenWithinASecond) {
    writeThreeEvents();
    show();
    const Picture before = steadyPicture();
    writeSettings("<key>textSize</key><integer>20</integer>");
    EXPECT_TRUE(pictureChangesFrom(before, soon));
}

TEST_F(LifeTest, ACalendarThatIsReplacedIsSeenWithinASecond) {
    writeThreeEvents();
    show();
    const int height = steadyPicture().height;
    writeCalendar(event("first", "Breakfast", "20260310T110000Z", "20260310T120000Z"));
    EXPECT_TRUE(becomesTrue(soon, [&] { return picture().height == height / 3; }));
}

// The file stands outside the watched folder under its first name, so that nothing is heard of it.
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
    const Picture before = steadyPicture();
    write("After all");
    rest(1);
    EXPECT_EQ(picture(), before);
    key("F5");
    EXPECT_TRUE(pictureChangesFrom(before, 5));
}

TEST_F(LifeTest, NothingFiresAfterTheWindowHasClosed) {
    writeThreeEvents();
    show({}, "2026-03-10T11:59:55Z");
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(10), 0) << errors();
    const std::string before = log() + errors();
    writeSettings("<key>textSize</key><integer>20</integer>");
    writeThreeEvents();
    rest(1);
    EXPECT_EQ(log() + errors(), before);
}

TEST_F(LifeTest, WithoutADisplayItSaysSo) {
    m_environment.erase("DISPLAY");
    ChildProcess program({QUORVEL_PROGRAM, "show", "--sample"}, m_environment,
                         path("errors").string());
    EXPECT_EQ(program.exitStatus(20), 2);
    EXPECT_THAT(errors(), HasSubstr("quorvel: there is no display"));
}

TEST_F(LifeTest, ADisplayThatGoesAwayEndsIt) {
    writeThreeEvents();
    show();
    m_display->end();
    const auto status = m_program->exitStatus(10);
    ASSERT_TRUE(status);
    EXPECT_GE(*status, 0) << "ended by a signal"; // and by no signal
    EXPECT_THAT(errors(), testing::Not(HasSubstr("Sanitizer")));
}

TEST_F(LifeTest, SaysThatTheCalendarsCannotBeRead) {
    writeCalendar("");
    show();
    const Picture empty = steadyPicture();
    m_program.reset();
    std::filesystem::remove_all(path("calendars"));
    std::filesystem::create_directory(path("calendars"));
    show();
    EXPECT_NE(steadyPicture(), empty);
}

TEST_F(LifeTest, ShowsEachController) {
    writeThreeEvents();
    show({"--controller", "QuorvelViewControllerNewToday"});
    EXPECT_EQ(steadyPicture().height, 270);
    m_program.reset();
    show({"--controller", "QuorvelViewController"});
    EXPECT_EQ(steadyPicture().height, 70);
    EXPECT_EQ(steadyPicture().width, 320);
}

TEST_F(LifeTest, ShowsTheSample) {
    showWith({"show", "--sample"});
    EXPECT_EQ(picture().width, 320);
    EXPECT_EQ(errors(), "");
}

} // namespace
} // namespace quorvel::window
