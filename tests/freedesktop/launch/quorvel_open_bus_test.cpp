// The handler of the links and what it speaks with: the desktop's calendar sources, applications on
// the bus, notifications. And buses that do not answer.
#include <gmock/gmock.h>

#include "tests/freedesktop/launch/bus_testing.h"
#include "tests/freedesktop/launch/quorvel_open_fixture.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_launch::BusApplication;
using testing_launch::FakeService;
using testing_launch::SilentBus;

// The desktop's list of calendars: an address book, a folder that is no source, and a calendar.
class CalendarSources : public FakeService {
public:
    explicit CalendarSources(const char* known, bool answers = true)
        : FakeService("org.gnome.evolution.dataserver.Sources5",
                      "/org/gnome/evolution/dataserver/SourceManager",
                      "<node><interface name='org.freedesktop.DBus.ObjectManager'>"
                      "<method name='GetManagedObjects'>"
                      "<arg type='a{oa{sa{sv}}}' direction='out'/></method></interface></node>",
                      [known, answers](const std::string&, GVariant*) {
                          return answers ? std::optional(sources(known)) : std::nullopt;
                      }) {}

private:
    static GVariant* sources(const char* known) {
        return g_variant_new_parsed(
            "({@o '/a': {'org.gnome.evolution.dataserver.Source': "
            "{'UID': <'people'>, 'Data': <'[Address Book]'>}}, "
            "@o '/b': {'org.example.Other': {'UID': <'office'>}}, "
            "@o '/c': {'org.gnome.evolution.dataserver.Source': {'UID': <42>}}, "
            "@o '/d': {'org.gnome.evolution.dataserver.Source': {'UID': <%s>}}},)",
            known);
    }
};

class Notifications : public FakeService {
public:
    explicit Notifications(bool answers = true)
        : FakeService("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                      "<node><interface name='org.freedesktop.Notifications'>"
                      "<method name='Notify'><arg type='s' direction='in'/>"
                      "<arg type='u' direction='in'/><arg type='s' direction='in'/>"
                      "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
                      "<arg type='as' direction='in'/><arg type='a{sv}' direction='in'/>"
                      "<arg type='i' direction='in'/><arg type='u' direction='out'/></method>"
                      "</interface></node>",
                      [answers](const std::string&, GVariant*) {
                          return answers ? std::optional(g_variant_new("(u)", 1U)) : std::nullopt;
                      }) {}
};

// Evolution as a running process, which owns its name on the bus.
class RunningEvolution : public FakeService {
public:
    RunningEvolution()
        : FakeService("org.gnome.Evolution", "/org/gnome/Evolution",
                      "<node><interface name='org.freedesktop.Application'><method name='Open'>"
                      "<arg type='as' direction='in'/><arg type='a{sv}' direction='in'/></method>"
                      "</interface></node>",
                      [](const std::string&, GVariant*) { return nullptr; }) {}
};

TEST_F(QuorvelOpenTest, EvolutionOpensAnEventOfACalendarThatTheDesktopKnows) {
    const CalendarSources sources("office");
    const RunningEvolution evolution;
    install("org.gnome.Evolution", "evolution %U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("evolution",
                                                    "calendar:///?source-uid=office&comp-uid=42")));
    EXPECT_THAT(sources.calls(), ElementsAre("GetManagedObjects()"));
}

TEST_F(QuorvelOpenTest, EvolutionThatIsNotRunningOpensTheDayOfAnEventFirst) {
    const CalendarSources sources("office");
    install("org.gnome.Evolution", "evolution %U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T174500Z",
                                        "calendar:///?source-uid=office&comp-uid=42")));
}

TEST_F(QuorvelOpenTest, ACommandLineForOneLinkShowsTheDay) {
    const CalendarSources sources("office");
    install("org.gnome.Evolution", "evolution %u");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T174500Z")));
}

TEST_F(QuorvelOpenTest, GnomeCalendarOpensAnEventOfACalendarThatTheDesktopKnows) {
    const CalendarSources sources("office");
    install("org.gnome.Calendar", "run org.gnome.Calendar @@u %U @@", "DBusActivatable=true");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("run", "org.gnome.Calendar", "@@u", "@@",
                                                    "--uuid", "office:42")));
}

TEST_F(QuorvelOpenTest, AHostileIdentifierReachesTheApplicationsAsOneArgument) {
    const CalendarSources sources("office");
    const std::string uid = "';$(touch,x)`y`&--help%0A%20|/..//\"";
    const std::string link = "x-apple-calevent://office/" + uid + "?o=415907100.0";
    install("org.gnome.Calendar", "calendar %U");
    EXPECT_EQ(quorvelOpen({link}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("calendar", "--uuid", "office:" + uid)));
    std::filesystem::remove(record());
    install("org.gnome.Evolution", "evolution %U");
    EXPECT_EQ(quorvelOpen({link}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T174500Z",
                                        "calendar:///?source-uid=office&comp-uid="
                                        "%27%3B%24%28touch%2Cx%29%60y%60%26--help"
                                        "%250A%2520%7C%2F..%2F%2F%22")));
}

TEST_F(QuorvelOpenTest, AnEventOfAnUnknownCalendarOpensAtItsDay) {
    const CalendarSources sources("home");
    install("org.gnome.Calendar", "calendar %U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("calendar", "--date", "03/07/14")));
    EXPECT_THAT(sources.calls(), ElementsAre("GetManagedObjects()"));
}

TEST_F(QuorvelOpenTest, ADayAsksForNoSources) {
    const CalendarSources sources("office");
    install("org.gnome.Evolution", "evolution %U");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T120000Z")));
    EXPECT_THAT(sources.calls(), IsEmpty());
}

TEST_F(QuorvelOpenTest, SourcesThatAreSilentHoldTheDayUpForAFewSecondsOnly) {
    const CalendarSources sources("office", false);
    install("org.gnome.Evolution", "evolution %U");
    const Outcome outcome = quorvelOpen({eventLink});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.seconds, 8);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T174500Z")));
    EXPECT_THAT(sources.calls(), ElementsAre("GetManagedObjects()"));
}

TEST_F(QuorvelOpenTest, AnApplicationOnTheBusComesToTheFront) {
    const BusApplication application;
    install("org.example.Bus", "started %U", "DBusActivatable=true\nMimeType=text/calendar;");
    associate("text/calendar", "org.example.Bus");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(application.calls(), ElementsAre("Activate({},)"));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(QuorvelOpenTest, EvolutionOnTheBusIsHandedTheLink) {
    const RunningEvolution evolution;
    install("org.gnome.Evolution", "started %U", "DBusActivatable=true");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(evolution.calls(),
                ElementsAre("Open(['calendar:///?startdate=20140307T120000Z'], {})"));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(QuorvelOpenTest, PassesItsTokenOnOverTheBus) {
    const BusApplication application;
    install("org.example.Bus", "started %U", "DBusActivatable=true\nMimeType=text/calendar;");
    associate("text/calendar", "org.example.Bus");
    EXPECT_EQ(quorvelOpen({eventLink}, {{"DESKTOP_STARTUP_ID", "a b_TIME7"}}).status, 0);
    EXPECT_THAT(application.calls(), ElementsAre("Activate({'activation-token': <'a b_TIME7'>, "
                                                 "'desktop-startup-id': <'a b_TIME7'>},)"));
}

TEST_F(QuorvelOpenTest, AnApplicationThatTheBusDoesNotKnowIsStarted) {
    install("org.example.Unknown", "started %U", "DBusActivatable=true\nMimeType=text/calendar;");
    associate("text/calendar", "org.example.Unknown");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("started")));
}

TEST_F(QuorvelOpenTest, ReportsASilentApplicationOnTheBus) {
    const BusApplication application(false);
    const Notifications notifications;
    install("org.example.Bus", "started %U", "DBusActivatable=true\nMimeType=text/calendar;");
    associate("text/calendar", "org.example.Bus");
    const Outcome outcome = quorvelOpen({eventLink});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_LT(outcome.seconds, 15);
    EXPECT_EQ(outcome.errors, "quorvel-open: the application org.example.Bus.desktop could not be "
                              "started (it did not answer): try it by hand\n");
    EXPECT_THAT(application.calls(), ElementsAre("Activate({},)"));
    EXPECT_THAT(notifications.calls(),
                ElementsAre("Notify('Quorvel', 0, 'x-office-calendar', 'The event cannot be shown',"
                            " 'The application org.example.Bus.desktop could not be started (it "
                            "did not answer): try it by hand.', [], {}, -1)"));
}

TEST_F(QuorvelOpenTest, ANotificationNamesTheEvent) {
    const Notifications notifications;
    EXPECT_EQ(quorvelOpen({eventLink}).status, 1);
    EXPECT_THAT(notifications.calls(),
                ElementsAre("Notify('Quorvel', 0, 'x-office-calendar', 'The event cannot be shown',"
                            " 'There is no calendar application: install Evolution or GNOME "
                            "Calendar.', [], {}, -1)"));
}

TEST_F(QuorvelOpenTest, ANotificationNamesTheDay) {
    const Notifications notifications;
    EXPECT_EQ(quorvelOpen({dayLink}).status, 1);
    EXPECT_THAT(notifications.calls(),
                ElementsAre("Notify('Quorvel', 0, 'x-office-calendar', 'The day cannot be shown',"
                            " 'There is no calendar application: install Evolution or GNOME "
                            "Calendar.', [], {}, -1)"));
}

TEST_F(QuorvelOpenTest, NothingIsNotifiedWhereAllWentWell) {
    const Notifications notifications;
    install("org.gnome.Evolution", "%U");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(notifications.calls(), IsEmpty());
}

TEST_F(QuorvelOpenTest, NotificationsThatAreSilentHoldNothingUp) {
    const Notifications notifications(false);
    const Outcome outcome = quorvelOpen({dayLink});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_LT(outcome.seconds, 8);
    EXPECT_THAT(outcome.errors, HasSubstr("there is no calendar application"));
}

class SilentBusTest : public QuorvelOpenTest {
protected:
    Outcome openOnSilentBus(const char* link) {
        return quorvelOpen({link}, {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
    }

    SilentBus bus{folder()};
};

TEST_F(SilentBusTest, TheDayIsShownIfTheSourcesDoNotAnswer) {
    install("org.gnome.Calendar", "calendar %U", "DBusActivatable=true");
    const Outcome outcome = openOnSilentBus(eventLink);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.seconds, 10);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("calendar", "--date", "03/07/14")));
    EXPECT_GT(bus.connections(), 0);
}

TEST_F(SilentBusTest, EvolutionIsStarted) {
    install("org.gnome.Evolution", "evolution %U");
    const Outcome outcome = openOnSilentBus(dayLink);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.seconds, 10);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T120000Z")));
}

TEST_F(SilentBusTest, AnApplicationOfTheBusIsStartedWithoutIt) {
    install("org.example.Bus", "started %U", "DBusActivatable=true\nMimeType=text/calendar;");
    associate("text/calendar", "org.example.Bus");
    const Outcome outcome = openOnSilentBus(eventLink);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.seconds, 10);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("started")));
    EXPECT_GT(bus.connections(), 0);
}

TEST_F(SilentBusTest, TheProblemIsReportedWithoutANotification) {
    const Outcome outcome = openOnSilentBus(dayLink);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_LT(outcome.seconds, 10);
    EXPECT_THAT(outcome.errors, HasSubstr("there is no calendar application"));
    EXPECT_GT(bus.connections(), 0);
}

TEST_F(QuorvelOpenTest, OpensTheDayWithoutAnyBus) {
    install("org.gnome.Evolution", "evolution %U");
    for (const char* address : {"unix:path=/nonexistent/bus", "disabled:", "nonsense"}) {
        EXPECT_EQ(quorvelOpen({eventLink}, {{"DBUS_SESSION_BUS_ADDRESS", address}}).status, 0);
        EXPECT_THAT(started(1), ElementsAre(ElementsAre(
                                    "evolution", "calendar:///?startdate=20140307T174500Z")));
        std::filesystem::remove(record());
    }
}

} // namespace
} // namespace quorvel::freedesktop
