// The library that asks the desktop, loaded only where there may be an answer.
#include "freedesktop/desktop/loaded_desktop.h"

#include <thread>

#include <gmock/gmock.h>

#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/settings_writer.h"
#include "tests/freedesktop/session/silent_bus.h"

namespace quorvel::freedesktop {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testing_session::EnvironmentVariable;
using testing_session::SettingsWriter;
using testing_session::SilentBus;
using testing_session::TemporaryFolder;

constexpr const char* missingModule = "/nonexistent/quorvel-desktop.so";
constexpr const char* noBus = "unix:path=/nonexistent/bus";

TEST(LoadedDesktop, WithoutASessionBusNothingIsLoaded) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    LoadedDesktop desktop(missingModule);
    EXPECT_EQ(desktop.clockFormat(), ClockFormat::ofLocale);
    EXPECT_FALSE(desktop.failure());
}

TEST(LoadedDesktop, AsksForTheClockFormatEachTime) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", noBus);
    SettingsWriter settings("org.gnome.desktop.interface");
    LoadedDesktop desktop(QUORVEL_DESKTOP_MODULE);
    EXPECT_EQ(desktop.clockFormat(), ClockFormat::ofLocale);
    settings.set("clock-format", "12h");
    EXPECT_EQ(desktop.clockFormat(), ClockFormat::twelveHours);
    settings.set("clock-format", "24h");
    EXPECT_EQ(desktop.clockFormat(), ClockFormat::twentyFourHours);
    EXPECT_FALSE(desktop.failure());
}

TEST(LoadedDesktop, AMissingModuleIsNamedWithWhatToDo) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", noBus);
    LoadedDesktop desktop(missingModule);
    EXPECT_EQ(desktop.clockFormat(), ClockFormat::ofLocale);
    ASSERT_TRUE(desktop.failure());
    EXPECT_THAT(desktop.failure()->what, HasSubstr(missingModule));
    EXPECT_THAT(desktop.failure()->toDo, HasSubstr("the package quorvel"));
    const auto found = desktop.makeSourcesSearch()->find();
    ASSERT_FALSE(found);
    EXPECT_THAT(found.error().english(), StartsWith("its library cannot be loaded: "));
}

TEST(LoadedDesktop, AModuleOfAnotherKindIsNamed) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", noBus);
    const TemporaryFolder folder;
    testing_session::write(folder / "quorvel-desktop.so", "no library");
    LoadedDesktop desktop(folder / "quorvel-desktop.so");
    desktop.clockFormat();
    ASSERT_TRUE(desktop.failure());
    EXPECT_THAT(desktop.failure()->what, HasSubstr("quorvel-desktop.so"));
}

TEST(LoadedDesktop, ASearchOutlivesTheDesktopAndNamesTheBus) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", noBus);
    const auto search = LoadedDesktop(QUORVEL_DESKTOP_MODULE).makeSourcesSearch();
    for (int i = 0; i < 2; ++i) {
        const auto found = search->find();
        ASSERT_FALSE(found);
        EXPECT_THAT(found.error().english(), StartsWith("the session bus cannot be reached: "));
    }
}

TEST(LoadedDesktop, ASearchIsCancelledBeforeAndWhileItRuns) {
    const SilentBus bus;
    const auto search = LoadedDesktop(QUORVEL_DESKTOP_MODULE).makeSourcesSearch();
    search->cancel();
    EXPECT_FALSE(search->find());
    EXPECT_FALSE(search->find());

    const auto running = LoadedDesktop(QUORVEL_DESKTOP_MODULE).makeSourcesSearch();
    std::thread thread([&running] { EXPECT_FALSE(running->find()); });
    running->cancel();
    thread.join();
}

} // namespace
} // namespace quorvel::freedesktop
