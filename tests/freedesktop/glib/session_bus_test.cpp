#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/session_bus_address.h"

#include <gtest/gtest.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using testing_session::EnvironmentVariable;
using testing_session::TemporaryFolder;

TEST(SessionBus, WithoutAnAddressAndAFolderThereIsNone) {
    const EnvironmentVariable noAddress("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const EnvironmentVariable noFolder("XDG_RUNTIME_DIR", nullptr);
    EXPECT_FALSE(mayHaveSessionBus());
}

TEST(SessionBus, MayBeDisabled) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    EXPECT_FALSE(mayHaveSessionBus());
}

TEST(SessionBus, TheSocketInTheRuntimeFolderCounts) {
    const TemporaryFolder folder;
    const EnvironmentVariable noAddress("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", folder.path().c_str());
    EXPECT_FALSE(mayHaveSessionBus());
    testing_session::write(folder / "bus", "");
    EXPECT_TRUE(mayHaveSessionBus());
}

TEST(SessionBus, ReportsABusThatCannotBeReached) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    const auto bus = connectToSessionBus(nullptr);
    ASSERT_FALSE(bus);
    EXPECT_NE(bus.error().what, "");
    EXPECT_EQ(waitForSessionBus(), nullptr);
}

} // namespace
} // namespace quorvel::freedesktop
