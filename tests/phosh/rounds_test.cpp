// What the plugin leaves in the shell's process: nothing, however often the session was locked.
#include <sstream>

#include <gmock/gmock.h>

#include "tests/phosh/lock_screen_fixture.h"

namespace quorvel::phosh {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

class RoundsTest : public LockScreenTest {
protected:
    static void makeRounds(PhoshSession& session, int count) {
        for (int round = 0; round < count; ++round) {
            ASSERT_TRUE(lockTurnAndUnlock(session)) << "round " << round << session.shellLog();
        }
    }
};

[[maybe_unused]] std::vector<std::string> leakStacks(const std::string& report) {
    std::vector<std::string> stacks(1);
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            stacks.emplace_back();
        } else if (line.find("    #") != std::string::npos) {
            stacks.back() += line + '\n';
        }
    }
    return stacks;
}

TEST_F(RoundsTest, AHundredRoundsLeaveNoThreadNorDescriptorNorWatchBehind) {
    writeCalendar("work.ics", eventsFromNow(100, "Event"));
    m_session.start();
    makeRounds(m_session, 10);
    const ProcessFigures early = settledFigures(m_session);
    makeRounds(m_session, 90);
    const ProcessFigures late = settledFigures(m_session);
    EXPECT_EQ(late.threads, early.threads);
    EXPECT_EQ(late.descriptors, early.descriptors);
    EXPECT_EQ(late.fileWatches, early.fileWatches);
    // Where the plugin is built with the address sanitizer, the log lists what the process has lost
    // at its end: much of the shell's, nothing of ours.
    EXPECT_TRUE(m_session.endShell());
    const std::string log = m_session.shellLog();
    EXPECT_THAT(log, Not(HasSubstr("ERROR: AddressSanitizer")));
#if defined(__SANITIZE_ADDRESS__)
    const std::size_t leaks = log.find("LeakSanitizer: detected");
    ASSERT_NE(leaks, std::string::npos) << log.substr(log.size() / 2);
    EXPECT_THAT(leakStacks(log.substr(leaks)),
                testing::Each(Not(AnyOf(HasSubstr("quorvel::"), HasSubstr("plugin-quorvel.so")))));
#endif
}

} // namespace
} // namespace quorvel::phosh
