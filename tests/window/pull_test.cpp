// The effect of the mouse and of keys on the window.
#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr int rows = 3;

class PullTest : public WindowTest {
protected:
    void showThreeRows(const std::vector<std::string>& more = {}) {
        writeThreeEvents();
        show(more);
        m_before = picture();
        ASSERT_EQ(m_before.height % rows, 0) << m_before.height;
        m_rowHeight = m_before.height / rows;
    }
    int middleOfRow(int row) const { return row * m_rowHeight + m_rowHeight / 2; }
    void pull(int row, int distance) const {
        drag(60, middleOfRow(row), 60 + distance, middleOfRow(row));
    }
    // Leaves the button pressed.
    void pullFarAndHold(int row) const {
        press(60, middleOfRow(row));
        moveTo(120, middleOfRow(row));
        moveTo(60 + distanceForOffset(90), middleOfRow(row));
        EXPECT_TRUE(pictureChangesFrom(m_before, 5));
    }
    // Pulls another row, whose link must be the only one that was opened.
    void expectNothingOpened() {
        EXPECT_TRUE(pictureBecomes(m_before, 5));
        pull(2, distanceForOffset(90));
        ASSERT_TRUE(opensLinks(1));
        EXPECT_THAT(opened(), ElementsAre(EndsWith("/third?o=794844000.0")));
    }

    Picture m_before;
    int m_rowHeight = 0;
};

TEST_F(PullTest, AFarPullToTheRightOpensTheRowsEvent) {
    showThreeRows();
    pull(0, distanceForOffset(84));
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(testing::AllOf(StartsWith("x-apple-calevent://work-"),
                                                     EndsWith("/first?o=794833200.0"))));
    EXPECT_TRUE(pictureBecomes(m_before, 5)); // the row has sprung back
}

TEST_F(PullTest, AShorterPullOpensNothing) {
    showThreeRows();
    pull(0, distanceForOffset(76));
    expectNothingOpened();
}

// A row 330 points wide moves by 80 points after 192 points of the pointer, not counting the slop
// of 10.
TEST_F(PullTest, APullMustExceedEightyPoints) {
    showThreeRows({"--width", "330"});
    pull(0, 10 + 192);
    EXPECT_TRUE(pictureBecomes(m_before, 5));
    pull(1, 10 + 193);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/second?o=794836800.0")));
}

TEST_F(PullTest, APullToTheLeftOpensNothing) {
    showThreeRows();
    drag(300, middleOfRow(0), 5, middleOfRow(0));
    expectNothingOpened();
}

TEST_F(PullTest, ADragDownwardsOpensNothing) {
    showThreeRows();
    drag(60, middleOfRow(0), 75, middleOfRow(0) + 400);
    expectNothingOpened();
}

TEST_F(PullTest, ClosingTheWindowDuringAPullOpensNothing) {
    showThreeRows();
    pullFarAndHold(0);
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(10), 0) << errors();
    release();
    EXPECT_THAT(handlers(), IsEmpty());
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PullTest, AnotherButtonCancelsThePull) {
    showThreeRows();
    pullFarAndHold(0);
    input({"mousedown", "3"});
    EXPECT_TRUE(pictureBecomes(m_before, 5)) << "the row springs back at once";
    input({"mouseup", "3", "mouseup", "1"});
    expectNothingOpened();
}

TEST_F(PullTest, HidingTheWindowDuringAPullOpensNothing) {
    showThreeRows();
    pullFarAndHold(0);
    input({"windowunmap", window()});
    release();
    input({"windowmap", window()});
    expectNothingOpened();
}

TEST_F(PullTest, TheRowFollowsTheFingerAndTheOthersStay) {
    showThreeRows();
    press(60, middleOfRow(1));
    moveTo(100, middleOfRow(1));
    moveTo(60 + distanceForOffset(40), middleOfRow(1));
    ASSERT_TRUE(pictureChangesFrom(m_before, 5));
    const Picture during = steadyPicture();
    EXPECT_EQ(during.band(0, m_rowHeight - 1), m_before.band(0, m_rowHeight - 1));
    EXPECT_EQ(during.band(2 * m_rowHeight, m_rowHeight - 1),
              m_before.band(2 * m_rowHeight, m_rowHeight - 1));
    // The row's text is 40 points farther to the right.
    int same = 0;
    int moved = 0;
    for (int y = m_rowHeight + 2; y < 2 * m_rowHeight - 2; ++y) {
        for (int x = 0; x < 200; ++x) {
            same += during.at(x, y) == m_before.at(x, y) ? 1 : 0;
            moved += during.at(x + 40, y) == m_before.at(x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(moved, same);
    EXPECT_GT(moved, 200 * (m_rowHeight - 4) * 95 / 100);
    release();
    EXPECT_TRUE(pictureBecomes(m_before, 5));
}

TEST_F(PullTest, OpensTheDayInAnotherApplication) {
    installHandler("days", "x-scheme-handler/fantastical2");
    writeSettings("<key>swipeAction</key><integer>2</integer>");
    showThreeRows();
    pull(1, distanceForOffset(84));
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre("fantastical2://show?date=2026-3-10"));
}

TEST_F(PullTest, BringsAnApplicationToTheFront) {
    installHandler("org.example.App", "");
    writeSettings("<key>swipeAction</key><integer>3</integer>"
                  "<key>customLaunchAppBundleID</key><string>org.example.App</string>");
    showThreeRows();
    pull(1, distanceForOffset(84));
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre("org.example.App"));
}

TEST_F(PullTest, KeysOpenEventsToo) {
    showThreeRows();
    key("Down");
    ASSERT_TRUE(pictureChangesFrom(m_before, 5)); // the focus is painted
    key("Down");
    key("Return");
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/second?o=794836800.0")));
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(10), 0) << errors();
}

TEST_F(PullTest, AHandlerThatHangsBlocksNothing) {
    installHandler("handler", "x-scheme-handler/x-apple-calevent", 60000);
    showThreeRows();
    pull(0, distanceForOffset(84));
    ASSERT_TRUE(opensLinks(1));
    EXPECT_TRUE(pictureBecomes(m_before, 5));
    pullFarAndHold(1);
    release();
    ASSERT_TRUE(opensLinks(2));
    EXPECT_TRUE(pictureBecomes(m_before, 5));
    EXPECT_THAT(handlers(), SizeIs(2)) << "they still hang";
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(10), 0) << errors();
}

TEST_F(PullTest, ScrollsALimitedListWithTheWheel) {
    std::string events;
    for (int i = 0; i < 1000; ++i) {
        events += event("e" + std::to_string(i), "Event " + std::to_string(i), "20260310T110000Z",
                        "20260310T120000Z");
    }
    writeCalendar(events);
    writeSettings("<key>limitMaxHeight</key><true/><key>maxHeight</key><integer>300</integer>");
    show();
    const Picture before = picture();
    EXPECT_EQ(before.height, 300);
    moveTo(100, 100);
    click(5);
    EXPECT_TRUE(pictureChangesFrom(before, 5));
    click(4);
    EXPECT_TRUE(pictureBecomes(before, 5));
    drag(100, 250, 100, 50);
    EXPECT_NE(steadyPicture(), before);
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(PullTest, IsSharpAtTwiceTheScale) {
    m_environment["GDK_SCALE"] = "2";
    writeThreeEvents();
    show();
    const Picture doubled = picture();
    EXPECT_EQ(doubled.width, 640);
    bool hasFineDetail = false; // which a picture with enlarged pixels does not have
    for (int y = 0; y + 1 < doubled.height; y += 2) {
        for (int x = 0; x + 1 < doubled.width; x += 2) {
            hasFineDetail = hasFineDetail || doubled.at(x, y) != doubled.at(x + 1, y);
        }
    }
    EXPECT_TRUE(hasFineDetail);
}

} // namespace
} // namespace quorvel::window
