#include "tests/freedesktop/launch/bus_testing.h"

#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorvel::testing_launch {

namespace {

// A connection of the service's own: the one that the process shares is the client's.
GDBusConnection* connection() {
    char* const address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    GDBusConnection* const bus = g_dbus_connection_new_for_address_sync(
        address,
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    g_free(address);
    if (bus == nullptr) {
        ADD_FAILURE() << "the test needs a session bus of its own";
        std::abort();
    }
    return bus;
}

constexpr const char* applicationXml = "<node><interface name='org.freedesktop.Application'>"
                                       "<method name='Activate'>"
                                       "<arg type='a{sv}' direction='in'/></method>"
                                       "<method name='Open'><arg type='as' direction='in'/>"
                                       "<arg type='a{sv}' direction='in'/></method>"
                                       "</interface></node>";

} // namespace

FakeService::FakeService(const char* name, const char* object, const char* interfaceXml,
                         Answer answer)
    : m_bus(connection())
    , m_answer(std::move(answer)) {
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interfaceXml, nullptr);
    static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
    m_object = g_dbus_connection_register_object(m_bus, object, node->interfaces[0], &table, this,
                                                 nullptr, nullptr);
    g_dbus_node_info_unref(node);
    GVariant* const reply = g_dbus_connection_call_sync(
        m_bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    g_variant_unref(reply);
}

FakeService::~FakeService() {
    for (GDBusMethodInvocation* const invocation : m_unanswered) {
        g_object_unref(invocation);
    }
    g_dbus_connection_unregister_object(m_bus, m_object);
    g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
    g_object_unref(m_bus);
}

void FakeService::called(GDBusConnection*, const char*, const char*, const char*,
                         const char* method, GVariant* values, GDBusMethodInvocation* invocation,
                         gpointer data) {
    auto& self = *static_cast<FakeService*>(data);
    char* const text = g_variant_print(values, FALSE);
    self.m_calls.push_back(std::string(method) + text);
    g_free(text);
    if (const std::optional<GVariant*> answer = self.m_answer(method, values)) {
        g_dbus_method_invocation_return_value(invocation, *answer);
    } else {
        self.m_unanswered.push_back(invocation);
    }
}

BusApplication::BusApplication(bool answers)
    : FakeService("org.example.Bus", "/org/example/Bus", applicationXml,
                  [answers](const std::string&, GVariant*) {
                      return answers ? std::optional<GVariant*>(nullptr) : std::nullopt;
                  }) {}

SilentBus::SilentBus(const std::filesystem::path& folder)
    : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    const std::string path = (folder / "silent-bus").string();
    unlink(path.c_str());
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    std::strncpy(place.sun_path, path.c_str(), sizeof place.sun_path - 1);
    if (bind(m_socket, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
        listen(m_socket, 16) != 0) {
        ADD_FAILURE() << "no socket at " << path;
    }
    m_address = "unix:path=" + path;
}

SilentBus::~SilentBus() {
    connections();
    for (const int taken : m_connections) {
        close(taken);
    }
    close(m_socket);
}

int SilentBus::connections() {
    for (int taken = accept(m_socket, nullptr, nullptr); taken >= 0;
         taken = accept(m_socket, nullptr, nullptr)) {
        m_connections.push_back(taken);
    }
    return static_cast<int>(m_connections.size());
}

} // namespace quorvel::testing_launch
