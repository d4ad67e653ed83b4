// What the plugin adds to the private memory of the real shell, for bench/phosh. No test: the
// shell's own memory differs by megabytes from run to run.
#include <cstdio>

#include <gtest/gtest.h>

#include "tests/phosh/lock_screen_fixture.h"

namespace quorvel::phosh {
namespace {

constexpr int rounds = 10;

class MemoryFigures : public LockScreenTest {
protected:
    // Kilobytes that the rounds add to the shell's memory.
    static long addedBy(PhoshSession& session) {
        session.start();
        const long before = settledFigures(session).privateDirtyKilobytes;
        for (int round = 0; round < rounds; ++round) {
            EXPECT_TRUE(lockTurnAndUnlock(session)) << "round " << round << session.shellLog();
        }
        return settledFigures(session).privateDirtyKilobytes - before;
    }
};

TEST_F(MemoryFigures, TenRoundsWithTenThousandEvents) {
    writeCalendar("work.ics", eventsFromNow(10000, "Event"));
    const long agenda = addedBy(m_session);
    PhoshSession reference({REFERENCE_FOLDER, {"reference"}, {}});
    const long line = addedBy(reference);
    std::printf("ten rounds: %ld kB with the agenda, %ld kB with a line of text, %ld kB more\n",
                agenda, line, agenda - line);
}

} // namespace
} // namespace quorvel::phosh
