#include "freedesktop/launch/desktop_launcher.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <memory>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include "platform/memory/list_log.h"
#include "platform/ns_url.h"
#include "tests/freedesktop/launch/bus_testing.h"
#include "tests/freedesktop/launch/launch_fixture.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSURL;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing_launch::BusApplication;
using testing_launch::SilentBus;

constexpr const char* eventScheme = "x-scheme-handler/x-apple-calevent";

// How long the main loop did not come round.
class LongestPause {
public:
    LongestPause()
        : m_source(g_timeout_add(5, beat, this)) {}
    ~LongestPause() { g_source_remove(m_source); }
    LongestPause(const LongestPause&) = delete;
    LongestPause& operator=(const LongestPause&) = delete;

    int beats() const { return m_beats; }
    double milliseconds() const { return m_longest; }

private:
    static gboolean beat(gpointer data) {
        auto& self = *static_cast<LongestPause*>(data);
        const Clock::time_point now = Clock::now();
        const std::chrono::duration<double, std::milli> pause =
            now - std::exchange(self.m_last, now);
        self.m_longest = std::max(self.m_longest, pause.count());
        ++self.m_beats;
        return G_SOURCE_CONTINUE;
    }

    using Clock = std::chrono::steady_clock;
    Clock::time_point m_last = Clock::now();
    double m_longest = 0;
    int m_beats = 0;
    guint m_source;
};

class NumberedTokens : public LaunchContext {
public:
    std::string makeToken(std::string_view entryName) override {
        made.emplace_back(entryName);
        return "token-" + std::to_string(made.size());
    }
    void discardToken(const std::string& token) override { discarded.push_back(token); }

    std::vector<std::string> made; // for these entries
    std::vector<std::string> discarded;
};

// The variables by which a program is given its token, as arguments of the recorder.
constexpr const char* tokenVariables = "$XDG_ACTIVATION_TOKEN $DESKTOP_STARTUP_ID";

class DesktopLauncherTest : public LaunchTest {
protected:
    void open(const std::string& link) { launcher->openURL(*NSURL::URLWithString(link)); }
    void activate(const std::string& identifier) {
        launcher->uiController()->activateApplicationAnimated(
            launcher->applicationController()->applicationWithDisplayIdentifier(identifier));
    }

    platform::memory::ListLog log;
    std::unique_ptr<DesktopLauncher> launcher = std::make_unique<DesktopLauncher>(log);
};

TEST_F(DesktopLauncherTest, OpensALinkWithTheHandlerOfItsScheme) {
    install("handler", "%u");
    associate(eventScheme, "handler");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("x-apple-calevent://office/42?o=1.0")));
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, AHostileLinkStaysOneArgument) {
    install("handler", "%u");
    associate(eventScheme, "handler");
    const std::string link = "x-apple-calevent://a/';$(touch,x)&b=%0A%20';--help?o=1.0";
    open(link);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre(link)));
}

TEST_F(DesktopLauncherTest, AProgramFindsItsTokenInTheEnvironment) {
    NumberedTokens tokens;
    launcher->setLaunchContext(&tokens);
    install("handler", tokenVariables);
    associate(eventScheme, "handler");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("token-1", "token-1")));
    activate("handler");
    EXPECT_THAT(started(2), ElementsAre(testing::_, ElementsAre("token-2", "token-2")));
    EXPECT_THAT(tokens.made, ElementsAre("handler.desktop", "handler.desktop"));
    EXPECT_THAT(tokens.discarded, IsEmpty());
    EXPECT_EQ(std::getenv("XDG_ACTIVATION_TOKEN"), nullptr);
    EXPECT_EQ(std::getenv("DESKTOP_STARTUP_ID"), nullptr);
}

// A token is for one start, and this process's own was used when its window appeared.
TEST_F(DesktopLauncherTest, AProgramNeverInheritsTheTokenOfTheHost) {
    setenv("XDG_ACTIVATION_TOKEN", "own", 1);
    setenv("DESKTOP_STARTUP_ID", "own", 1);
    install("org.example.App", tokenVariables);
    activate("org.example.App");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("unset", "unset")));
    unsetenv("XDG_ACTIVATION_TOKEN");
    unsetenv("DESKTOP_STARTUP_ID");
}

TEST_F(DesktopLauncherTest, AnApplicationOnTheBusIsGivenItsToken) {
    NumberedTokens tokens;
    launcher->setLaunchContext(&tokens);
    const BusApplication application;
    install("org.example.Bus", "started %u", "DBusActivatable=true");
    associate(eventScheme, "org.example.Bus");
    activate("org.example.Bus");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(application.calls(), ElementsAre("Activate({'activation-token': <'token-1'>, "
                                                 "'desktop-startup-id': <'token-1'>},)",
                                                 "Open(['x-apple-calevent://office/42?o=1.0'], "
                                                 "{'activation-token': <'token-2'>, "
                                                 "'desktop-startup-id': <'token-2'>})"));
}

TEST_F(DesktopLauncherTest, TheTokenOfAFailedStartIsDiscarded) {
    NumberedTokens tokens;
    launcher->setLaunchContext(&tokens);
    write(folder() / "applications/broken.desktop",
          "[Desktop Entry]\nType=Application\nName=broken\nExec=" RECORDER " %u\n"
          "Path=/nonexistent/folder\n");
    associate(eventScheme, "broken");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(tokens.discarded, ElementsAre("token-1"));
}

TEST_F(DesktopLauncherTest, ATokenThatNoMessageMayHoldIsNotPassedOn) {
    class OddTokens final : public LaunchContext {
    public:
        std::string makeToken(std::string_view) override { return token; }
        void discardToken(const std::string&) override {}
        std::string token;
    } tokens;
    launcher->setLaunchContext(&tokens);
    const BusApplication application;
    install("org.example.Bus", "started", "DBusActivatable=true");
    for (const std::string& token :
         {std::string(), std::string("\xFF\xFE"), std::string("a\nb"), std::string(1 << 20, 'x')}) {
        tokens.token = token;
        activate("org.example.Bus");
        EXPECT_TRUE(launcher->waitForLaunches(20));
    }
    EXPECT_THAT(application.calls(),
                ElementsAre("Activate({},)", "Activate({},)", "Activate({},)", "Activate({},)"));
}

TEST_F(DesktopLauncherTest, AProgramOfTheHostOpensLinksInsteadOfTheHandler) {
    NumberedTokens tokens;
    launcher->setLaunchContext(&tokens);
    install("handler", "%u");
    associate(eventScheme, "handler");
    const std::filesystem::path program = folder() / "a program";
    write(program, "#!/bin/sh\nexec " RECORDER " " + record().string() +
                       " 0 own \"$@\" '$XDG_ACTIVATION_TOKEN'\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    launcher->setLinkProgram(program.string());
    open("x-apple-calevent://office/42;$(touch,x)?o=1.0");
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("own", "x-apple-calevent://office/42;$(touch,x)?o=1.0",
                                        "token-1")));
    EXPECT_THAT(tokens.made, ElementsAre(""));
    open("http://example.org/");
    launcher->setLinkProgram("/nonexistent/program");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("is not opened: its scheme"),
                                       HasSubstr("could not be opened: ")));
    EXPECT_THAT(tokens.discarded, ElementsAre("token-2"));
    EXPECT_THAT(startedMeanwhile(), SizeIs(1));
}

TEST_F(DesktopLauncherTest, OpensNoOtherSchemeAndNothingTooLong) {
    install("handler", "%u");
    associate("x-scheme-handler/http", "handler");
    open("http://example.org/");
    open("x-apple-calevent://a/" + std::string(1 << 20, 'x'));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
    EXPECT_THAT(log.lines,
                ElementsAre(HasSubstr("is not opened: its scheme"), HasSubstr("it is too long")));
    EXPECT_LT(log.lines[1].size(), 200U);
}

TEST_F(DesktopLauncherTest, ReportsASchemeWithoutAHandler) {
    open("fantastical2://show?date=2014-3-7");
    EXPECT_THAT(log.lines, ElementsAre("QRV: no application opens fantastical2 links"));
}

// As quorvel-open ends where no calendar application is installed.
TEST_F(DesktopLauncherTest, ReportsAProgramThatSoonEndsWithAnError) {
    std::vector<std::string> failures;
    launcher->setFailureHandler([&](const Error& failure) { failures.push_back(failure.what); });
    install("handler", "%u");
    associate(eventScheme, "handler");
    setenv("RECORDER_STATUS", "1", 1);
    open("x-apple-calevent://office/42?o=1.0");
    for (int i = 0; i < 500 && failures.empty(); ++i) {
        startedMeanwhile();
    }
    unsetenv("RECORDER_STATUS");
    EXPECT_THAT(failures, ElementsAre("the link x-apple-calevent://office/42?o=1.0 could not be "
                                      "opened: its program failed"));
    EXPECT_THAT(log.lines, ElementsAre("QRV: " + failures.at(0)));
}

TEST_F(DesktopLauncherTest, AProgramThatFailsAfterTheLauncherIsGoneIsNotReported) {
    install("handler", "%u", "", 300);
    associate(eventScheme, "handler");
    setenv("RECORDER_STATUS", "1", 1);
    open("x-apple-calevent://office/42?o=1.0");
    unsetenv("RECORDER_STATUS");
    EXPECT_THAT(started(1), SizeIs(1));
    launcher.reset();
    EXPECT_TRUE(becomesTrue([] {
        startedMeanwhile();
        siginfo_t child{};
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) != 0;
    }));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, ReportsEachFailureToTheHost) {
    std::vector<std::string> failures;
    launcher->setFailureHandler([&](const Error& failure) { failures.push_back(failure.what); });
    open("fantastical2://show?date=2014-3-7");
    open("http://example.org/");
    activate("org.example.Missing");
    EXPECT_THAT(failures, ElementsAre("no application opens fantastical2 links",
                                      "the link http://example.org/ is not opened: its scheme is "
                                      "none of the widget's",
                                      "there is no application org.example.Missing",
                                      "there is no application to bring to the front"));
    ASSERT_EQ(log.lines.size(), failures.size());
    EXPECT_EQ(log.lines.at(0), "QRV: " + failures.at(0));
    launcher->setFailureHandler(nullptr);
    open("http://example.org/");
    EXPECT_THAT(failures, SizeIs(4));
}

TEST_F(DesktopLauncherTest, ReportsAHandlerThatCannotBeStarted) {
    write(folder() / "applications/broken.desktop",
          "[Desktop Entry]\nType=Application\nName=broken\nExec=" RECORDER " %u\n"
          "Path=/nonexistent/folder\n");
    associate(eventScheme, "broken");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("could not be opened")));
}

TEST_F(DesktopLauncherTest, DoesNotWaitForAHandler) {
    install("slow", "%u", "", 3000);
    associate(eventScheme, "slow");
    const auto start = std::chrono::steady_clock::now();
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(started(1), SizeIs(1));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2500));
}

TEST_F(DesktopLauncherTest, BringsAnApplicationToTheFrontByEitherName) {
    install("org.example.App", "front");
    activate("org.example.App");
    activate("org.example.App.desktop");
    EXPECT_THAT(started(2), ElementsAre(ElementsAre("front"), ElementsAre("front")));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, ReportsAnUnknownApplication) {
    activate("org.example.Missing");
    activate("../../etc/passwd");
    EXPECT_THAT(log.lines, ElementsAre("QRV: there is no application org.example.Missing",
                                       "QRV: there is no application to bring to the front",
                                       "QRV: there is no application ../../etc/passwd",
                                       "QRV: there is no application to bring to the front"));
}

TEST_F(DesktopLauncherTest, ActivatesOverTheBusAndWaitsForTheReply) {
    const BusApplication application;
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    EXPECT_THAT(application.calls(), IsEmpty()); // nothing has waited so far
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(application.calls(), ElementsAre("Activate({},)"));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, HandsALinkOverTheBus) {
    const BusApplication application;
    install("org.example.Bus", "started %u", "DBusActivatable=true");
    associate(eventScheme, "org.example.Bus");
    open("x-apple-calevent://a/;$(touch,x)*&b=%0A--help?o=1.0");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(application.calls(),
                ElementsAre("Open(['x-apple-calevent://a/;$(touch,x)*&b=%0A--help?o=1.0'], {})"));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(DesktopLauncherTest, StartsTheProgramWhereTheBusDoesNotKnowIt) {
    install("org.example.Nobody", "started", "DBusActivatable=true");
    activate("org.example.Nobody");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("started")));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, ReportsTheErrorOfAnApplicationOnTheBus) {
    const testing_launch::FakeService broken("org.example.Broken", "/org/example/Broken",
                                             "<node><interface name='org.example.Other'/></node>",
                                             [](const std::string&, GVariant*) { return nullptr; });
    install("org.example.Broken", "started", "DBusActivatable=true");
    activate("org.example.Broken");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(log.lines,
                ElementsAre(StartsWith("QRV: the application org.example.Broken.desktop could not "
                                       "be brought to the front: ")));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(DesktopLauncherTest, DropsAnApplicationThatDoesNotAnswerInTime) {
    launcher = std::make_unique<DesktopLauncher>(log, 1);
    const BusApplication silent(false);
    install("org.example.Bus", "started %u", "DBusActivatable=true");
    associate(eventScheme, "org.example.Bus");
    activate("org.example.Bus");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(log.lines,
                ElementsAre("QRV: the application org.example.Bus.desktop could not be brought to "
                            "the front: it did not answer",
                            "QRV: the link x-apple-calevent://office/42?o=1.0 could not be opened: "
                            "it did not answer"));
    EXPECT_THAT(silent.calls(), SizeIs(2));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
    EXPECT_THAT(log.lines, SizeIs(2));
}

TEST_F(DesktopLauncherTest, ASilentApplicationHasTwentySeconds) {
    EXPECT_EQ(DesktopLauncher::usualPatience, 20);
    const BusApplication silent(false);
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    EXPECT_FALSE(launcher->waitForLaunches(0.5));
    EXPECT_THAT(silent.calls(), ElementsAre("Activate({},)"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, ASilentApplicationDoesNotHoldTheLoopUp) {
    const BusApplication silent(false);
    install("org.example.Bus", "started", "DBusActivatable=true");
    const LongestPause pause;
    for (int i = 0; i < 20; ++i) {
        activate("org.example.Bus");
        startedMeanwhile();
    }
    EXPECT_GT(pause.beats(), 50);
    EXPECT_LT(pause.milliseconds(), 500);
}

TEST_F(DesktopLauncherTest, OddTimesToWaitAreNoneAtAll) {
    const BusApplication silent(false);
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    for (const double seconds : {0.0, -1.0, -1e300, std::numeric_limits<double>::quiet_NaN(),
                                 -std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(launcher->waitForLaunches(seconds));
    }
}

TEST_F(DesktopLauncherTest, HugeTimesToWaitEndWithTheLaunch) {
    launcher = std::make_unique<DesktopLauncher>(log, 0.2);
    const BusApplication silent(false);
    install("org.example.Bus", "started", "DBusActivatable=true");
    for (const double seconds : {1e12, 1e300, std::numeric_limits<double>::infinity()}) {
        activate("org.example.Bus");
        EXPECT_TRUE(launcher->waitForLaunches(seconds));
    }
    EXPECT_THAT(log.lines, SizeIs(3));
}

TEST_F(DesktopLauncherTest, LeavesNoProcessesBehind) {
    install("handler", "%u");
    associate(eventScheme, "handler");
    install("org.example.App", "front");
    for (int i = 0; i < 10; ++i) {
        open("x-apple-calevent://office/42?o=1.0");
        activate("org.example.App");
    }
    EXPECT_THAT(started(20), SizeIs(20));
    EXPECT_TRUE(launcher->waitForLaunches(20));
    siginfo_t child{};
    EXPECT_TRUE(becomesTrue([&] {
        startedMeanwhile();
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD;
    })) << "process "
        << child.si_pid;
}

TEST_F(DesktopLauncherTest, HasATerminalStartedForThoseThatNeedOne) {
    const std::filesystem::path programs = folder() / "programs";
    std::filesystem::create_directories(programs);
    std::filesystem::remove(programs / "x-terminal-emulator");
    const char* path = std::getenv("PATH");
    const std::string before = path != nullptr ? path : "";
    setenv("PATH", programs.c_str(), 1);
    install("org.example.Shell", "front", "Terminal=true");
    activate("org.example.Shell");
    EXPECT_THAT(log.lines, ElementsAre(EndsWith("it needs a terminal, and there is none")));
    write(programs / "x-terminal-emulator",
          "#!/bin/sh\n[ \"$1\" = -e ] && shift && exec \"$@\" in-terminal\n");
    std::filesystem::permissions(programs / "x-terminal-emulator",
                                 std::filesystem::perms::owner_all);
    activate("org.example.Shell");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("front", "in-terminal")));
    setenv("PATH", before.c_str(), 1);
}

TEST_F(DesktopLauncherTest, NothingIsHandedToAShellsScript) {
    write(folder() / "applications/script.desktop",
          "[Desktop Entry]\nType=Application\nName=script\nExec=sh -c \"" RECORDER " " +
              record().string() + " 0 [%u]\"\n");
    associate(eventScheme, "script");
    open("x-apple-calevent://a/$(touch,x);b?o=1.0");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("[]")));
}

TEST_F(DesktopLauncherTest, NothingHappensAfterItsDestruction) {
    launcher = std::make_unique<DesktopLauncher>(log, 1);
    const BusApplication silent(false);
    install("org.example.Nobody", "started", "DBusActivatable=true");
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    ASSERT_THAT(log.lines, SizeIs(1)); // it was dropped
    activate("org.example.Bus");
    for (int i = 0; i < 100 && silent.calls().size() < 2; ++i) {
        g_main_context_iteration(nullptr, TRUE);
    }
    activate("org.example.Nobody");
    launcher.reset();
    for (int i = 0; i < 8; ++i) { // longer than it would have had patience
        EXPECT_THAT(startedMeanwhile(), IsEmpty());
    }
    EXPECT_THAT(log.lines, SizeIs(1));
}

class SilentSessionTest : public DesktopLauncherTest {
protected:
    // The process shares one connection, which must be closed first.
    SilentSessionTest() {
        GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
        g_object_add_weak_pointer(G_OBJECT(connection), reinterpret_cast<gpointer*>(&connection));
        g_object_unref(connection);
        for (int i = 0; i < 100 && connection != nullptr; ++i) {
            startedMeanwhile();
        }
        EXPECT_EQ(connection, nullptr);
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    }
    ~SilentSessionTest() override {
        setenv("DBUS_SESSION_BUS_ADDRESS", before.c_str(), 1);
        startedMeanwhile();
    }

    const std::string before = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    SilentBus bus{folder()};
};

TEST_F(SilentSessionTest, AProgramNeedsNoBus) {
    install("handler", "%u");
    associate(eventScheme, "handler");
    open("x-apple-calevent://office/42?o=1.0");
    EXPECT_THAT(started(1), SizeIs(1));
    EXPECT_EQ(bus.connections(), 0);
}

TEST_F(SilentSessionTest, AnApplicationOfTheBusIsStartedWithoutItAndHoldsNothingUp) {
    install("org.example.Bus", "started", "DBusActivatable=true");
    const LongestPause pause;
    activate("org.example.Bus");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("started")));
    EXPECT_LT(pause.milliseconds(), 500);
    EXPECT_GT(bus.connections(), 0);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(SilentSessionTest, ThePatienceHoldsForTheBusToo) {
    launcher = std::make_unique<DesktopLauncher>(log, 0.2);
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    EXPECT_TRUE(launcher->waitForLaunches(20));
    EXPECT_THAT(log.lines, ElementsAre(EndsWith("it did not answer")));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(SilentSessionTest, NothingHappensAfterItsDestruction) {
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    startedMeanwhile();
    EXPECT_GT(bus.connections(), 0);
    launcher.reset();
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(2500);
    while (std::chrono::steady_clock::now() < end) {
        EXPECT_THAT(startedMeanwhile(), IsEmpty());
    }
    EXPECT_THAT(log.lines, IsEmpty());
}

} // namespace
} // namespace quorvel::freedesktop
