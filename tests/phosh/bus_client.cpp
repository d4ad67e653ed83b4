#include "tests/phosh/bus_client.h"

#include <stdexcept>

#include "tests/window/child_process.h"

namespace quorvel::phosh {

using freedesktop::VariantHandle;

namespace {

constexpr int milliseconds = 10000; // of one call

GDBusConnection* connectTo(const std::string& address) {
    return g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
}

} // namespace

BusClient::BusClient(const std::string& address, double seconds) {
    window::becomesTrue(seconds, [&] {
        m_connection.reset(connectTo(address));
        return m_connection != nullptr;
    });
    if (!m_connection) {
        throw std::runtime_error("no bus at " + address);
    }
    g_dbus_connection_set_exit_on_close(m_connection.get(), FALSE);
}

bool BusClient::waitForService(const std::string& name, double seconds) const {
    return window::becomesTrue(seconds, [&] {
        const VariantHandle reply = call({"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                          "org.freedesktop.DBus", "NameHasOwner"},
                                         g_variant_new("(s)", name.c_str()));
        gboolean hasOwner = FALSE;
        if (reply) {
            g_variant_get(reply.get(), "(b)", &hasOwner);
        }
        return hasOwner != FALSE;
    });
}

VariantHandle BusClient::call(const Method& method, GVariant* arguments) const {
    return VariantHandle(g_dbus_connection_call_sync(
        m_connection.get(), method.service.c_str(), method.object.c_str(), method.interface.c_str(),
        method.name.c_str(), arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, milliseconds, nullptr,
        nullptr));
}

} // namespace quorvel::phosh
