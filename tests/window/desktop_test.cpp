// The window among others on the desktop: its header and menus, its keys, its only instance, and
// what it remembers.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

class DesktopTest : public WindowTest {
protected:
    void showThreeRows(const std::vector<std::string>& more = {}) {
        writeThreeEvents();
        show(more);
        m_before = picture();
        m_rowHeight = m_before.height / 3;
    }
    int middleOfRow(int row) const { return row * m_rowHeight + m_rowHeight / 2; }
    bool isClosed() { return m_program->exitStatus(10) == 0; }
    // Runs the command while the window is open; its exit status.
    std::optional<int> showAgain(const std::vector<std::string>& arguments) {
        std::vector<std::string> words{QUORVEL_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        ChildProcess program(words, m_environment, path("second").string());
        return program.exitStatus(20);
    }
    bool isFirstWindow() const { return std::to_string(m_display->windows().at(0)) == window(); }
    std::string textOf(const std::string& name) const {
        std::ifstream file(path(name));
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    Picture m_before;
    int m_rowHeight = 0;
};

TEST_F(DesktopTest, KeysCloseTheWindow) {
    for (const char* keys : {"Escape", "ctrl+w", "ctrl+q"}) {
        showThreeRows();
        key(keys);
        EXPECT_TRUE(isClosed()) << keys << errors();
    }
}

TEST_F(DesktopTest, TheMenuOpensAndQuits) {
    showThreeRows();
    key("F10");
    ASSERT_NE(secondWindow(), 0U);
    key("q"); // the mnemonic
    EXPECT_TRUE(isClosed()) << errors();
}

TEST_F(DesktopTest, EscapeClosesOnlyTheMenu) {
    showThreeRows();
    key("F10");
    ASSERT_NE(secondWindow(), 0U);
    key("Escape");
    EXPECT_TRUE(becomesTrue(5, [this] { return m_display->windows().size() == 1; }));
    EXPECT_EQ(m_program->exitStatus(0.3), std::nullopt) << errors();
}

TEST_F(DesktopTest, ShowsItsShortcutsAndWhatItIs) {
    // GTK 3.24.49 loses a list here. By whole stacks the sanitizer knows this leak from others.
    m_environment["ASAN_OPTIONS"] += ":fast_unwind_on_malloc=0";
    showThreeRows();
    key("ctrl+question");
    EXPECT_NE(secondWindow(), 0U);
    endProgram();
    for (const char* mnemonic : {"k", "a"}) {
        showThreeRows();
        key("F10");
        const unsigned long menu = secondWindow();
        ASSERT_NE(menu, 0U);
        key(mnemonic);
        EXPECT_TRUE(becomesTrue(5, [&] {
            const auto windows = m_display->windows();
            return windows.size() == 2 && std::ranges::find(windows, menu) == windows.end();
        })) << mnemonic;
        EXPECT_EQ(errors(), "");
        endProgram();
    }
}

TEST_F(DesktopTest, TheHeaderShowsTodayAndTheNextDayAfterMidnight) {
    writeThreeEvents();
    show({}, "2026-03-10T10:00:00Z");
    const Picture today = wholePicture();
    endProgram();
    show({}, "2026-03-10T23:59:55Z");
    const auto header = [](const Picture& whole) { return whole.part(40, 8, 200, 30); };
    EXPECT_TRUE(becomesTrue(20, [&] { return header(wholePicture()) != header(today); }));
}

TEST_F(DesktopTest, ADoubleClickDoesWhatAPullDoes) {
    showThreeRows();
    moveTo(60, middleOfRow(1));
    click(1);
    click(1);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/second?o=794836800.0")));
    EXPECT_TRUE(becomesTrue(5, [this] { return handlers().empty(); }));
    rest(1); // longer than a double click
    click(1);
    rest(0.5);
    EXPECT_THAT(opened(), SizeIs(1)) << "a single click opens nothing";
}

TEST_F(DesktopTest, ARowsMenuOpensTheEventOrTheDay) {
    installHandler("days", "x-scheme-handler/fantastical2");
    writeSettings("<key>swipeAction</key><integer>3</integer>"); // a pull would do something else
    showThreeRows();
    moveTo(60, middleOfRow(2));
    click(3);
    ASSERT_NE(secondWindow(), 0U);
    key("o");
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/third?o=794844000.0")));
    EXPECT_TRUE(becomesTrue(5, [this] { return m_display->windows().size() == 1; }));
    key("Menu"); // of the row that has the focus now
    ASSERT_NE(secondWindow(), 0U);
    key("d");
    ASSERT_TRUE(opensLinks(2));
    EXPECT_EQ(opened().at(1), "fantastical2://show?date=2026-3-10");
}

TEST_F(DesktopTest, AnOpenedApplicationIsGivenATokenToComeToTheFront) {
    installHandler("handler", "x-scheme-handler/x-apple-calevent", 0, "$DESKTOP_STARTUP_ID");
    showThreeRows();
    drag(60, middleOfRow(0), 60 + distanceForOffset(90), middleOfRow(0));
    ASSERT_TRUE(opensLinks(2));
    EXPECT_THAT(opened().at(0), EndsWith("/first?o=794833200.0"));
    EXPECT_THAT(opened().at(1), HasSubstr("_TIME"));
}

TEST_F(DesktopTest, NoRowNoMenu) {
    showThreeRows();
    key("Menu");
    rest(0.5);
    EXPECT_THAT(m_display->windows(), SizeIs(1));
}

TEST_F(DesktopTest, ALinkThatNothingOpensIsReportedInTheWindowForAWhile) {
    std::filesystem::remove(path("config/mimeapps.list"));
    std::filesystem::remove(path("data/applications/handler.desktop"));
    showThreeRows();
    drag(60, middleOfRow(0), 60 + distanceForOffset(90), middleOfRow(0));
    EXPECT_TRUE(becomesTrue(5, [this] {
        return picture().band(0, m_rowHeight) == m_before.band(0, m_rowHeight) &&
               picture() != m_before;
    })) << "the line covers the last row";
    EXPECT_TRUE(pictureBecomes(m_before, 15)) << "it fades";
    EXPECT_THAT(textOf("log"), HasSubstr("no application opens x-apple-calevent links"));
}

TEST_F(DesktopTest, ASecondWindowIsTheFirst) {
    writeThreeEvents();
    showWith({"show", "--sample"});
    input({"windowunmap", window()});
    EXPECT_TRUE(becomesTrue(5, [this] { return m_display->windows().empty(); }));
    EXPECT_EQ(showAgain({"show", "--sample"}), 0);
    EXPECT_EQ(textOf("second"), "");
    EXPECT_TRUE(becomesTrue(5, [this] { return m_display->windows().size() == 1; }));
    EXPECT_TRUE(isFirstWindow());
    EXPECT_EQ(showAgain({"show", "--sample", "--locale", "en_GB"}), 0);
    EXPECT_EQ(textOf("second"),
              "quorvel: the window is already open with other options: close it first\n");
    EXPECT_THAT(m_display->windows(), SizeIs(1));
    key("Escape");
    EXPECT_TRUE(isClosed());
    showWith({"show", "--sample"}); // nobody owns the name any more
}

TEST_F(DesktopTest, WorksWithoutASessionBus) {
    for (const char* address : {"disabled:", "unix:path=/nonexistent/bus"}) {
        m_environment["DBUS_SESSION_BUS_ADDRESS"] = address;
        showWith({"show", "--sample"});
        EXPECT_EQ(errors(), "");
        key("Escape");
        EXPECT_TRUE(isClosed());
    }
}

TEST_F(DesktopTest, RemembersASizeThatTheUserChose) {
    showThreeRows();
    const Picture whole = wholePicture();
    key("Escape");
    EXPECT_TRUE(isClosed());
    show();
    EXPECT_EQ(wholePicture().height, whole.height) << "its own size is not remembered";
    rest(1.1); // after that, a new size is the user's
    input({"windowsize", window(), std::to_string(whole.width + 60),
           std::to_string(whole.height + 80)});
    ASSERT_TRUE(becomesTrue(5, [&] { return picture().height == m_before.height + 80; }));
    writeCalendar(event("a", "Alone", "20260310T110000Z", "20260310T120000Z"));
    rest(1);
    EXPECT_EQ(picture().height, m_before.height + 80) << "it remains while rows come and go";
    key("Escape");
    EXPECT_TRUE(isClosed());
    EXPECT_THAT(textOf("home/.local/state/quorvel/window"),
                HasSubstr("size 380 " + std::to_string(m_before.height + 80) + "\n"));
    show();
    EXPECT_EQ(wholePicture().width, whole.width + 60);
    EXPECT_EQ(wholePicture().height, whole.height + 80);
}

TEST_F(DesktopTest, RemembersItsPositionToThePixel) {
    showThreeRows();
    input({"windowmove", window(), "200", "150"});
    rest(0.5);
    for (int run = 0; run < 3; ++run) {
        key("Escape");
        EXPECT_TRUE(isClosed());
        EXPECT_EQ(textOf("home/.local/state/quorvel/window"), "position 200 150\n") << run;
        show();
    }
}

TEST_F(DesktopTest, ATornFileOfItsSizeIsIgnored) {
    std::filesystem::create_directories(path("home/.local/state/quorvel"));
    std::ofstream(path("home/.local/state/quorvel/window")) << "size 99";
    showThreeRows();
    EXPECT_EQ(m_before.width, 320);
    EXPECT_EQ(errors(), "");
}

TEST_F(DesktopTest, AUserWithoutCalendarsIsOfferedTheManual) {
    installHandler("reader", "text/markdown");
    std::filesystem::remove_all(path("calendars"));
    std::filesystem::create_directory(path("calendars"));
    show();
    const Picture shown = picture();
    EXPECT_GT(shown.height, 44) << "there is a button below the line";
    moveTo(shown.width / 2, shown.height - 10);
    click(1);
    ASSERT_TRUE(opensLinks(1)) << errors();
    EXPECT_THAT(opened().at(0), EndsWith("/your-calendars.md"));
}

} // namespace
} // namespace quorvel::window
