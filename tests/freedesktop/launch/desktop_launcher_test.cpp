#include "freedesktop/launch/desktop_launcher.h"

#include <chrono>
#include <memory>

#include <gmock/gmock.h>

#include "platform/memory/list_log.h"
#include "platform/ns_url.h"
#include "tests/freedesktop/launch/launch_fixture.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSURL;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* eventScheme = "x-scheme-handler/x-apple-calevent";

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
    open("x-apple-calevent://work/42?o=1.0");
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("x-apple-calevent://work/42?o=1.0")));
    EXPECT_TRUE(launcher->waitForLaunches(5));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, AHostileLinkStaysOneArgument) {
    install("handler", "%u");
    associate(eventScheme, "handler");
    const std::string link = "x-apple-calevent://a/';$(touch,x)&b=%0A%20';--help?o=1.0";
    open(link);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre(link)));
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

TEST_F(DesktopLauncherTest, SaysWhereNobodyOpensTheScheme) {
    open("fantastical2://show?date=2014-3-7");
    EXPECT_THAT(log.lines, ElementsAre("QRV: no application opens fantastical2 links"));
}

TEST_F(DesktopLauncherTest, SaysWhereAHandlerCannotBeStarted) {
    write(folder() / "applications/broken.desktop",
          "[Desktop Entry]\nType=Application\nName=broken\nExec=" RECORDER " %u\n"
          "Path=/nonexistent/folder\n");
    associate(eventScheme, "broken");
    open("x-apple-calevent://work/42?o=1.0");
    EXPECT_TRUE(launcher->waitForLaunches(5));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("could not be opened")));
}

TEST_F(DesktopLauncherTest, DoesNotWaitForAHandler) {
    install("slow", "%u", "", 3000);
    associate(eventScheme, "slow");
    const auto start = std::chrono::steady_clock::now();
    open("x-apple-calevent://work/42?o=1.0");
    EXPECT_THAT(started(1), testing::SizeIs(1));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2500));
}

TEST_F(DesktopLauncherTest, BringsAnApplicationToTheFrontByEitherName) {
    install("org.example.App", "front");
    activate("org.example.App");
    activate("org.example.App.desktop");
    EXPECT_THAT(started(2), ElementsAre(ElementsAre("front"), ElementsAre("front")));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(DesktopLauncherTest, SaysWhereThereIsNoSuchApplication) {
    activate("org.example.Missing");
    activate("../../etc/passwd");
    EXPECT_THAT(log.lines, ElementsAre("QRV: there is no application org.example.Missing",
                                       "QRV: there is no application to bring to the front",
                                       "QRV: there is no application ../../etc/passwd",
                                       "QRV: there is no application to bring to the front"));
}

// An application on the bus, which counts how often it was called.
class BusApplication {
public:
    explicit BusApplication(const char* name) {
        m_bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
        static const char* xml =
            "<node><interface name='org.freedesktop.Application'>"
            "<method name='Activate'><arg type='a{sv}' direction='in'/></method>"
            "<method name='Open'><arg type='as' direction='in'/>"
            "<arg type='a{sv}' direction='in'/></method>"
            "</interface></node>";
        m_node = g_dbus_node_info_new_for_xml(xml, nullptr);
        static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
        m_object = g_dbus_connection_register_object(
            m_bus, "/org/example/Bus", m_node->interfaces[0], &table, this, nullptr, nullptr);
        GVariant* reply = g_dbus_connection_call_sync(
            m_bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        g_variant_unref(reply);
    }
    ~BusApplication() {
        g_dbus_connection_unregister_object(m_bus, m_object);
        g_dbus_node_info_unref(m_node);
        g_object_unref(m_bus);
    }
    BusApplication(const BusApplication&) = delete;
    BusApplication& operator=(const BusApplication&) = delete;

    std::vector<std::string> calls;

private:
    static void called(GDBusConnection*, const char*, const char*, const char*, const char* method,
                       GVariant*, GDBusMethodInvocation* invocation, gpointer self) {
        static_cast<BusApplication*>(self)->calls.emplace_back(method);
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    GDBusConnection* m_bus = nullptr;
    GDBusNodeInfo* m_node = nullptr;
    guint m_object = 0;
};

TEST_F(DesktopLauncherTest, ActivatesOverTheBusAndWaitsForTheReply) {
    BusApplication application("org.example.Bus");
    install("org.example.Bus", "started", "DBusActivatable=true");
    activate("org.example.Bus");
    EXPECT_THAT(application.calls, IsEmpty()); // nothing has waited so far
    EXPECT_TRUE(launcher->waitForLaunches(10));
    EXPECT_THAT(application.calls, ElementsAre("Activate"));
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(DesktopLauncherTest, IsSilentOnceItIsGone) {
    install("org.example.Nobody", "started", "DBusActivatable=true");
    activate("org.example.Nobody");
    launcher.reset();
    startedMeanwhile();
    EXPECT_THAT(log.lines, IsEmpty());
}

} // namespace
} // namespace quorvel::freedesktop
