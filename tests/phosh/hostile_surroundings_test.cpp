// What a stranger's calendars and settings do to the shell: nothing. It lives on, its page turns
// and it unlocks.
#include <fstream>

#include <sys/stat.h>

#include "tests/phosh/lock_screen_fixture.h"

namespace quorvel::phosh {
namespace {

namespace fs = std::filesystem;

class HostileSurroundingsTest : public LockScreenTest {
protected:
    void expectUsableLockScreen() {
        startAndTurn();
        m_session.drag({180, 400}, {180, 200}); // also while the calendars are being read
        EXPECT_TRUE(m_session.isLocked());
        EXPECT_TRUE(m_session.unlock());
        ASSERT_TRUE(lockAndTurn()) << m_session.shellLog();
        EXPECT_TRUE(m_session.unlock());
        EXPECT_TRUE(m_session.isShellAlive()) << m_session.shellLog();
    }
    fs::path calendars() const { return m_session.path("home/.local/share/calendars"); }
};

std::string eventTitled(const std::string& title) {
    std::string event = eventsFromNow(1, "TITLE");
    return event.replace(event.find("TITLE"), 5, title);
}

TEST_F(HostileSurroundingsTest, TornSettings) {
    writeCalendar("work.ics", eventsFromNow(3, "Event"));
    writeSettings("<?xml version=\"1.0\"?><plist><dict><key>textSize</key><real>1");
    expectUsableLockScreen();
}

TEST_F(HostileSurroundingsTest, CalendarsThatCannotBeRead) {
    fs::create_directory(calendars() / "folder.ics");
    fs::create_symlink("/nowhere", calendars() / "dangling.ics");
    ASSERT_EQ(mkfifo((calendars() / "pipe.ics").c_str(), 0600), 0);
    std::ofstream(calendars() / "noise.ics") << std::string(100000, '\xFF');
    fs::permissions(calendars() / "noise.ics", fs::perms::none);
    expectUsableLockScreen();
}

TEST_F(HostileSurroundingsTest, ATitleOfAMegabyte) {
    writeCalendar("work.ics", eventTitled(std::string(1 << 20U, 'W')));
    expectUsableLockScreen();
}

TEST_F(HostileSurroundingsTest, ATitleOfCombiningMarks) {
    std::string marks = "a";
    for (int i = 0; i < 20000; ++i) {
        marks += "\xCC\x81";
    }
    writeCalendar("work.ics", eventTitled(marks));
    expectUsableLockScreen();
}

TEST_F(HostileSurroundingsTest, AHundredThousandEvents) {
    writeCalendar("work.ics", eventsFromNow(100000, "Event"));
    expectUsableLockScreen();
}

} // namespace
} // namespace quorvel::phosh
