// The real program, and a real calendar server.
#include <chrono>
#include <cstdlib>

#include <gmock/gmock.h>

#include "tests/app/command_fixture.h"
#include "tests/freedesktop/calendars/server/server_fixture.h"

namespace quorvel::app {
namespace {

using namespace testing_eds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::Not;

double secondsSince(steady_clock::time_point begin) {
    return std::chrono::duration<double>(steady_clock::now() - begin).count();
}

// Gives the program the test's own bus; without it nothing would be found.
class EdsCommandTest : public CommandTest {
protected:
    EdsCommandTest() {
        for (const char* const name :
             {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "ASAN_OPTIONS"}) {
            if (const char* const value = std::getenv(name)) {
                m_environment[name] = value;
            }
        }
        server.addCalendar({"test-home", "A home", "#336699"});
        server.addCalendar({"test-work", "B work", "#AABBCC"});
        server.addCalendar({"test-hidden", "C hidden", "#ABCDEF", false});
        server.add("test-home",
                   eventText("UID:daily|SUMMARY:Daily|DTSTART:20260301T120000Z|"
                             "DTEND:20260301T130000Z|RRULE:FREQ=DAILY|EXDATE:20260311T120000Z"));
        server.add("test-work", eventText("UID:holiday|SUMMARY:Holiday|DTSTART;VALUE=DATE:20260311|"
                                          "LOCATION:At sea"));
        server.add("test-hidden", eventText("UID:secret|SUMMARY:Secret|DTSTART:20260310T150000Z|"
                                            "DTEND:20260310T160000Z"));
    }

    RunResult agenda(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"agenda", "--calendars", "eds:"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runHere(arguments);
    }
    // Without --calendars.
    RunResult runWithWhatTheUserHas(const std::string& command) const {
        return run({command, "--now", "2026-03-10T10:00:00Z", "--locale", "en_GB"});
    }

    class Server : public ServerTest {
    public:
        using ServerTest::add;
        using ServerTest::addCalendar;
        using ServerTest::disconnect;
        using ServerTest::goOn;
        using ServerTest::kill;
        using ServerTest::modify;
        using ServerTest::stop;

    private:
        void TestBody() override {}
    };
    Server server;
};

constexpr const char* wholeAgenda = "12:00       Daily\n"
                                    "Tomorrow    Holiday\n"
                                    "Thu, 12:00  Daily\n";

TEST_F(EdsCommandTest, AgendaShowsWhatTheServerHasButWhatIsSwitchedOff) {
    const RunResult shown = agenda();
    EXPECT_EQ(shown.output, wholeAgenda);
    EXPECT_EQ(shown.errors, "");
    EXPECT_EQ(shown.status, 0);
    const Json rows = agenda({"--json"}).json();
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0]["calendar"], "A home");
    EXPECT_EQ(rows[1]["start"], "2026-03-11T00:00:00+00:00");
    EXPECT_EQ(rows[1]["allDay"], true);
}

TEST_F(EdsCommandTest, TheUsersOwnListOfDeselectedCalendarsHolds) {
    write("preferences/com.apple.mobilecal.plist",
          propertyList("<dict><key>LastDeselectedCalendars</key><array>"
                       "<string>test-home</string></array></dict>"));
    const std::string shown = agenda().output;
    EXPECT_THAT(shown, HasSubstr("Secret"));
    EXPECT_THAT(shown, Not(HasSubstr("Daily")));
}

TEST_F(EdsCommandTest, WithoutSourcesTheServerStandsBesideTheUsersFolders) {
    write("home/.calendars/paper/one.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                                               event("paper", "On paper",
                                                     "DTSTART:20260310T130000Z\r\n"
                                                     "DTEND:20260310T140000Z") +
                                               "END:VCALENDAR\r\n");
    const RunResult shown = runWithWhatTheUserHas("agenda");
    EXPECT_THAT(shown.output, HasSubstr("Daily"));
    EXPECT_THAT(shown.output, HasSubstr("On paper"));
    EXPECT_EQ(shown.errors, "");
    const std::string list = runWithWhatTheUserHas("calendars").output;
    EXPECT_THAT(list, HasSubstr("STORE\n"));
    EXPECT_THAT(list, testing::ContainsRegex("test-home +A home +#336699FF +yes +"
                                             "Evolution Data Server\n"));
    EXPECT_THAT(list, testing::ContainsRegex("test-hidden +C hidden +#ABCDEFFF +no +"
                                             "Evolution Data Server\n"));
    EXPECT_THAT(list, testing::ContainsRegex("paper-[0-9a-f]+ +paper +#[0-9A-F]+ +yes +" +
                                             path("home/.calendars/paper").string() + "\n"));
}

TEST_F(EdsCommandTest, AListOfCalendarsForScriptsHasTheKeysThatItAlwaysHad) {
    const Json list = runHere({"calendars", "--json", "--calendars", "eds:"}).json();
    const Json expected = {{"identifier", "test-hidden"},
                           {"title", "C hidden"},
                           {"color", "#ABCDEFFF"},
                           {"selected", false}};
    EXPECT_NE(std::find(list.begin(), list.end(), expected), list.end()) << list.dump(1);
}

TEST_F(EdsCommandTest, SourcesComeInTheirOrder) {
    writeCalendar("file", event("f", "File", "DTSTART:20260310T110000Z\r\nDTEND:20260310T113000Z"));
    const auto titles = [&](const std::vector<std::string>& sources) {
        std::vector<std::string> arguments{"calendars", "--json"};
        for (const std::string& source : sources) {
            arguments.insert(arguments.end(), {"--calendars", source});
        }
        std::string result;
        for (const Json& calendar : runHere(arguments).json()) {
            result += calendar["title"].get<std::string>() + ",";
        }
        return result;
    };
    const std::string ofServer = "A home,B work,Birthdays & Anniversaries,C hidden,Personal,";
    EXPECT_EQ(titles({"eds:", calendars()}), ofServer + "file,");
    EXPECT_EQ(titles({calendars(), "eds:"}), "file," + ofServer);
    EXPECT_THAT(runHere({"agenda", "--calendars", "eds:", "--calendars", calendars()}).output,
                testing::StartsWith("11:00       File\n12:00       Daily\n"));
}

TEST_F(EdsCommandTest, DaemonsThatStandStillAreNotWaitedForAndNamed) {
    writeCalendar("file", event("f", "File", "DTSTART:20260310T110000Z\r\nDTEND:20260310T113000Z"));
    server.stop(factoryProcesses());
    constexpr double usualWait = 2.9;
    constexpr double waitOfTheLibrary = 25; // and a slow machine starts a process in seconds
    auto begin = steady_clock::now();
    const RunResult shown = runHere(
        {"agenda", "--calendars", "eds:", "--calendars", calendars(), "--calendar-wait", "0.5"});
    const double secondsOfShortWait = secondsSince(begin);
    EXPECT_EQ(shown.output, "11:00  File\n");
    EXPECT_THAT(shown.errors,
                HasSubstr("quorvel: the calendar 'A home' of Evolution Data Server: it has not "
                          "answered within 0.5 s"));
    EXPECT_EQ(shown.status, 0);
    begin = steady_clock::now();
    const RunResult alone = agenda();
    const double secondsOfUsualWait = secondsSince(begin);
    EXPECT_GT(secondsOfUsualWait, usualWait);
    EXPECT_LT(secondsOfUsualWait, waitOfTheLibrary);
    EXPECT_LT(secondsOfShortWait + 1, secondsOfUsualWait); // 2.5 on a quiet machine
    EXPECT_EQ(alone.status, 1);
    EXPECT_THAT(alone.errors, HasSubstr("not one calendar could be read"));
    server.goOn();
    EXPECT_EQ(agenda().output, wholeAgenda);
}

TEST_F(EdsCommandTest, DaemonsThatWereKilledAreStartedAgain) {
    server.kill(factoryProcesses());
    EXPECT_EQ(agenda().output, wholeAgenda);
    server.kill(registryProcess());
    EXPECT_EQ(agenda().output, wholeAgenda);
    server.kill(factoryProcesses());
    server.kill(registryProcess());
    EXPECT_EQ(agenda().output, wholeAgenda);
}

TEST_F(EdsCommandTest, AnOccurrenceThatIsChangedWhileTheCalendarIsLoadedIsShown) {
    server.modify("test-home",
                  eventText("UID:daily|SUMMARY:Moved|RECURRENCE-ID:20260310T120000Z|"
                            "DTSTART:20260310T170000Z|DTEND:20260310T180000Z"),
                  E_CAL_OBJ_MOD_THIS);
    EXPECT_EQ(agenda().output, "17:00       Moved\n"
                               "Tomorrow    Holiday\n"
                               "Thu, 12:00  Daily\n");
}

TEST_F(EdsCommandTest, WithoutABusThereIsNothingToWaitFor) {
    m_environment.erase("DBUS_SESSION_BUS_ADDRESS");
    m_environment["XDG_RUNTIME_DIR"] = path("home").string();
    const RunResult named = agenda();
    EXPECT_EQ(named.status, 2);
    EXPECT_EQ(named.errors, "quorvel: the calendars 'eds:' cannot be read (there is no session "
                            "bus): name a .ics file or a folder of them\n");
    const RunResult usual = runWithWhatTheUserHas("agenda");
    EXPECT_EQ(usual.errors,
              "quorvel: there are no calendars: name them with --calendars, or try --sample\n");
}

} // namespace
} // namespace quorvel::app
