// The session by itself, without a plugin: where these fail, the others prove nothing.
#include <gmock/gmock.h>

#include "tests/phosh/phosh_session.h"

namespace quorvel::phosh {
namespace {

using window::Picture;

constexpr Position bottom{180, 680};
constexpr Position middle{180, 360};

// Without the line of the clock, which may change meanwhile.
Picture below(const Picture& screen) {
    return screen.band(100, screen.height - 100);
}

TEST(PhoshSession, LocksAndUnlocks) {
    PhoshSession session({});
    session.start();
    EXPECT_FALSE(session.isLocked());
    ASSERT_TRUE(session.lock());
    EXPECT_TRUE(session.isLocked());
    const Picture locked = session.steadyScreen();
    EXPECT_EQ(locked.width, 720);
    EXPECT_EQ(locked.height, 1440);
    ASSERT_TRUE(session.unlock());
    const Picture home = session.steadyScreen();
    EXPECT_NE(below(home), below(locked));

    ASSERT_TRUE(session.lock());
    EXPECT_NE(below(session.steadyScreen()), below(home));
    ASSERT_TRUE(session.unlock());
    EXPECT_EQ(below(session.steadyScreen()), below(home));
    EXPECT_TRUE(session.isShellAlive());
}

TEST(PhoshSession, AFingerTurnsThePage) {
    PhoshSession session({});
    session.start();
    ASSERT_TRUE(session.lock());
    const Picture locked = session.steadyScreen();
    session.drag(bottom, middle);
    EXPECT_NE(below(session.steadyScreen()), below(locked)); // the page of the keypad
}

TEST(PhoshSession, AFingerThatIsHeldIsLiftedLater) {
    PhoshSession session({});
    session.start();
    ASSERT_TRUE(session.lock());
    const Picture locked = session.steadyScreen();
    session.drag(bottom, middle, 15, true);
    const Picture held = session.steadyScreen();
    EXPECT_NE(below(held), below(locked));
    session.lift();
    EXPECT_NE(below(session.steadyScreen()), below(held));
}

TEST(PhoshSession, ReportsAShellThatHasEnded) {
    PhoshSession session({});
    session.start();
    EXPECT_GT(session.shellFigures().privateDirtyKilobytes, 1000);
    EXPECT_TRUE(session.endShell());
    EXPECT_FALSE(session.isShellAlive());
}

} // namespace
} // namespace quorvel::phosh
