#include "freedesktop/session/feedback_device.h"

#include <gmock/gmock.h>

#include "tests/freedesktop/launch/bus_testing.h"
#include "tests/freedesktop/session/private_bus.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_launch::FakeService;

constexpr const char* feedbackXml =
    "<node><interface name='org.sigxcpu.Feedback'><method name='TriggerFeedback'>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a{sv}' direction='in'/><arg type='i' direction='in'/>"
    "<arg type='u' direction='out'/></method></interface></node>";

constexpr const char* press = "TriggerFeedback('org.quorvel.Quorvel', 'button-pressed', {}, -1)";

TEST(FeedbackDevice, APressIsSentToTheService) {
    const PrivateBus bus; // also the session's
    const FakeService service(
        "org.sigxcpu.Feedback", "/org/sigxcpu/Feedback", feedbackXml,
        [](const std::string&, GVariant*) { return std::optional(g_variant_new("(u)", 1U)); });
    FeedbackDevice device;
    device.press();
    EXPECT_THAT(service.calls(), IsEmpty()) << "nothing has waited so far";
    device.press(); // while it connects
    EXPECT_TRUE(runUntil([&] { return !service.calls().empty(); }));
    runFor(0.1);
    EXPECT_THAT(service.calls(), ElementsAre(press));
    device.press();
    EXPECT_TRUE(runUntil([&] { return service.calls().size() == 2; }));
}

TEST(FeedbackDevice, NothingHappensWithoutAServiceOrABus) {
    {
        const PrivateBus bus;
        FeedbackDevice device;
        device.press();
        runFor(0.2);
    }
    for (const char* address : {"disabled:", "unix:path=/nonexistent/bus"}) {
        const EnvironmentVariable none("DBUS_SESSION_BUS_ADDRESS", address);
        FeedbackDevice device;
        device.press();
        runFor(0.1);
        device.press();
    } // destroyed while it may be connecting
    runFor(0.1);
}

} // namespace
} // namespace quorvel::freedesktop
