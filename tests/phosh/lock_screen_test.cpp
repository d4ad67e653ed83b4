// The agenda on the lock screen, moved with real touches inside the shell's carousel.
#include <gmock/gmock.h>

#include "tests/phosh/lock_screen_fixture.h"

namespace quorvel::phosh {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using window::Picture;

constexpr int many = 40; // events

class TouchTest : public LockScreenTest {
protected:
    void SetUp() override {
        writeCalendar("work.ics", eventsFromNow(many, "Event"));
        startAndTurn();
        m_before = agenda();
    }
    static std::string linkOf(int event) {
        return "x-apple-calevent://.*/event-" + std::to_string(event) + "\\?o=.*";
    }
    // Without what lies above the list.
    static Picture listIn(const Picture& screen) {
        const int top = static_cast<int>(2 * AgendaPage::firstRow);
        return screen.band(top, screen.height - top);
    }

    Picture m_before;
};

TEST_F(TouchTest, ARowThatIsPulledFarOpensItsEventBehindTheLock) {
    pull(2);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(MatchesRegex(linkOf(2))));
    EXPECT_TRUE(m_session.isLocked());
    EXPECT_EQ(listIn(agenda()), listIn(m_before)); // the row has sprung back, the page is the same
    EXPECT_TRUE(m_session.unlock());
    EXPECT_TRUE(m_session.isShellAlive());
}

TEST_F(TouchTest, AHeldRowFollowsTheFingerAndOpensNothingWhenItWasNotPulledFar) {
    const Position from = AgendaPage::row(1);
    m_session.drag(from, {from.x + 80, from.y}, 15, true);
    const Picture held = agenda();
    EXPECT_NE(listIn(held), listIn(m_before));
    m_session.lift();
    EXPECT_EQ(listIn(agenda()), listIn(m_before));
    pull(0); // whose link must be the only one
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(MatchesRegex(linkOf(0))));
}

TEST_F(TouchTest, AVerticalDragScrollsTheList) {
    m_session.drag({180, 400}, {180, 400 - 10 * AgendaPage::rowHeight / 2});
    EXPECT_NE(listIn(agenda()), listIn(m_before));
    EXPECT_THAT(opened(), IsEmpty());
    pull(5);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), testing::Not(ElementsAre(MatchesRegex(linkOf(5)))));
    EXPECT_TRUE(m_session.isLocked());
}

TEST_F(TouchTest, AHorizontalDragThatBeginsOnNoRowTurnsThePage) {
    m_session.drag({330, AgendaPage::aboveRows}, {40, AgendaPage::aboveRows});
    EXPECT_NE(listIn(agenda()), listIn(m_before));
    EXPECT_TRUE(m_session.turnToWidgets());
    EXPECT_EQ(listIn(agenda()), listIn(m_before));
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(TouchTest, IsThereAgainAfterUnlockingAndLocking) {
    ASSERT_TRUE(m_session.unlock());
    ASSERT_TRUE(lockAndTurn());
    EXPECT_EQ(listIn(agenda()), listIn(m_before));
    pull(3);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(MatchesRegex(linkOf(3))));
}

class PrivacyTest : public LockScreenTest {
protected:
    // At the same times whenever it is called: only the titles differ.
    void writeEvents(const std::string& title) const {
        writeCalendar("work.ics", eventsAfter(m_now, many, title));
    }

private:
    std::time_t m_now = std::time(nullptr);
};

TEST_F(PrivacyTest, TitlesAreHiddenWhereTheShellMustNotShowDetails) {
    writeShellSettings("show-details-when-locked=false");
    writeEvents("Secret");
    startAndTurn();
    const Picture hidden = agenda().band(184, 1200);
    ASSERT_TRUE(m_session.unlock());
    writeEvents("Harmless");
    ASSERT_TRUE(lockAndTurn());
    EXPECT_EQ(agenda().band(184, 1200), hidden);
}

TEST_F(PrivacyTest, TitlesAreShownByDefault) {
    writeEvents("Secret");
    startAndTurn();
    const Picture shown = agenda().band(184, 1200);
    ASSERT_TRUE(m_session.unlock());
    writeEvents("Harmless");
    ASSERT_TRUE(lockAndTurn());
    EXPECT_NE(agenda().band(184, 1200), shown);
}

} // namespace
} // namespace quorvel::phosh
