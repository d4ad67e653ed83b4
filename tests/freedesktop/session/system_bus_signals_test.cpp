#include "freedesktop/session/system_bus_signals.h"

#include <gmock/gmock.h>

#include "tests/freedesktop/session/private_bus.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::IsEmpty;

class SystemBusSignalsTest : public testing::Test {
protected:
    void listen() {
        signals = std::make_unique<SystemBusSignals>(
            SystemBusEvents{[this] { ++resumes; },
                            [this](std::vector<std::string> assignments) {
                                locales.push_back(std::move(assignments));
                            }});
    }

    int resumes = 0;
    std::vector<std::vector<std::string>> locales;
    std::unique_ptr<SystemBusSignals> signals;
};

TEST_F(SystemBusSignalsTest, WithoutABusItDoesNotCall) {
    const EnvironmentVariable noBus("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    listen();
    runFor(0.1);
    EXPECT_EQ(wakeUpsDuring(0.3), 0);
    signals.reset();
    runFor(0.05);
    EXPECT_EQ(resumes, 0);
}

class SystemBusSignalsOnBusTest : public SystemBusSignalsTest {
protected:
    void listenAndBeHeard() {
        listen();
        ASSERT_TRUE(runUntil([this] {
            return services.hasListener("org.freedesktop.login1") &&
                   services.hasListener("org.freedesktop.locale1");
        }));
    }

    PrivateBus bus;
    FakeSystemServices services{bus};
};

TEST_F(SystemBusSignalsOnBusTest, ReportsWakingButNotFallingAsleep) {
    listenAndBeHeard();
    services.prepareForSleep(true);
    runFor(0.1);
    EXPECT_EQ(resumes, 0);
    services.prepareForSleep(false);
    EXPECT_TRUE(runUntil([this] { return resumes == 1; }));
}

TEST_F(SystemBusSignalsOnBusTest, RequestsTheSystemsLocaleWhenItChanges) {
    listenAndBeHeard();
    EXPECT_EQ(services.localeQuestions(), 0);
    services.setLocale({"LANG=de_DE.UTF-8", "LC_TIME=en_GB.UTF-8"}, true);
    EXPECT_TRUE(runUntil([this] { return locales.size() == 1; }));
    services.setLocale({}, false);
    EXPECT_TRUE(runUntil([this] { return locales.size() == 2; }));
    EXPECT_THAT(locales[0], ElementsAre("LANG=de_DE.UTF-8", "LC_TIME=en_GB.UTF-8"));
    EXPECT_THAT(locales[1], IsEmpty());
}

TEST_F(SystemBusSignalsOnBusTest, WhatIsMalformedOrOfSomethingElseIsPassedOver) {
    listenAndBeHeard();
    const char* const manager = "org.freedesktop.login1.Manager";
    const char* const login = "/org/freedesktop/login1";
    const char* const properties = "org.freedesktop.DBus.Properties";
    const char* const locale = "/org/freedesktop/locale1";
    services.emit(login, manager, "PrepareForSleep", g_variant_new("(s)", "false"));
    services.emit(login, manager, "PrepareForShutdown", g_variant_new("(b)", FALSE));
    services.emit(locale, properties, "PropertiesChanged",
                  g_variant_new("(s)", "org.freedesktop.locale1"));
    services.emit(locale, properties, "PropertiesChanged",
                  g_variant_new_parsed("('org.freedesktop.locale1', {'VConsoleKeymap': <'de'>}, "
                                       "@as ['X11Layout'])"));
    runFor(0.15);
    EXPECT_EQ(resumes, 0);
    EXPECT_THAT(locales, IsEmpty());
    EXPECT_EQ(services.localeQuestions(), 0);
}

TEST_F(SystemBusSignalsOnBusTest, ListeningDoesNotWakeTheProcess) {
    listenAndBeHeard();
    runFor(0.1);
    EXPECT_EQ(wakeUpsDuring(0.5), 0);
}

TEST_F(SystemBusSignalsOnBusTest, DoesNotCallAfterItsDestruction) {
    listen(); // the bus is still being opened
    signals.reset();
    runFor(0.1);
    listenAndBeHeard();
    services.setLocale({"LANG=de_DE.UTF-8"}, false);
    ASSERT_TRUE(runUntil([this] { return services.localeQuestions() == 1; })) << "on its way";
    services.prepareForSleep(false);
    signals.reset();
    runFor(0.15);
    EXPECT_EQ(resumes, 0);
    EXPECT_THAT(locales, IsEmpty());
    EXPECT_FALSE(services.hasListener("org.freedesktop.login1"));
}

TEST_F(SystemBusSignalsOnBusTest, ABusThatGoesAwayDoesNotEndTheProcess) {
    listenAndBeHeard();
    bus.stop();
    runFor(0.15);
    EXPECT_EQ(resumes, 0);
}

} // namespace
} // namespace quorvel::freedesktop
