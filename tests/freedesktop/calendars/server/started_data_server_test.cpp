#include "freedesktop/calendars/server/started_data_server.h"

#include <chrono>

#include <gmock/gmock.h>

#include "freedesktop/calendars/server/bus_sources_search.h"
#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/silent_bus.h"

namespace quorvel::freedesktop::eds {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing_session::EnvironmentVariable;
using testing_session::SilentBus;

Deadline inSeconds(double seconds) {
    return std::chrono::steady_clock::now() +
           std::chrono::duration_cast<std::chrono::steady_clock::duration>(
               std::chrono::duration<double>(seconds));
}

// The module is loaded only where there is a server.
constexpr const char* presentFile = "/dev/null";

TEST(StartedDataServer, WithoutABusThereIsNoServer) {
    const EnvironmentVariable noAddress("DBUS_SESSION_BUS_ADDRESS", nullptr);
    const EnvironmentVariable noFolder("XDG_RUNTIME_DIR", nullptr);
    StartedDataServer server("/nonexistent.so", std::make_unique<BusSourcesSearch>());
    const auto list = server.calendars(inSeconds(5));
    ASSERT_FALSE(list);
    EXPECT_EQ(list.error().kind, ServerFailure::Kind::absent);
    EXPECT_EQ(list.error().problem, "there is no session bus");
    EXPECT_THAT(server.events({"one"}, {}, inSeconds(5)), IsEmpty());
}

TEST(StartedDataServer, AMissingModuleIsNamedAndTheBusLeftAlone) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    StartedDataServer server("/nonexistent.so", std::make_unique<BusSourcesSearch>());
    const auto list = server.calendars(inSeconds(5));
    ASSERT_FALSE(list);
    EXPECT_EQ(list.error().kind, ServerFailure::Kind::absent);
    EXPECT_EQ(list.error().problem, "the part of Quorvel for it, quorvel-eds, is not installed");
}

TEST(StartedDataServer, ABusThatCannotBeReachedIsNamed) {
    const EnvironmentVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    StartedDataServer server(presentFile, std::make_unique<BusSourcesSearch>());
    const auto list = server.calendars(inSeconds(5));
    ASSERT_FALSE(list);
    EXPECT_EQ(list.error().kind, ServerFailure::Kind::absent);
    EXPECT_THAT(list.error().problem.english(), HasSubstr("the session bus cannot be reached: "));
}

TEST(StartedDataServer, ABusThatDoesNotAnswerIsNotWaitedFor) {
    const SilentBus bus;
    const auto begin = std::chrono::steady_clock::now();
    {
        StartedDataServer server(presentFile, std::make_unique<BusSourcesSearch>());
        EXPECT_EQ(server.calendars(inSeconds(0.1)).error().kind, ServerFailure::Kind::silent);
        EXPECT_EQ(server.calendars(inSeconds(0.1)).error().kind, ServerFailure::Kind::silent);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

} // namespace
} // namespace quorvel::freedesktop::eds
