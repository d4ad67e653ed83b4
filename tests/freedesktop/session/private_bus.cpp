#include "tests/freedesktop/session/private_bus.h"

namespace quorvel::testing_session {

namespace {

constexpr const char* loginService = "org.freedesktop.login1";
constexpr const char* localeService = "org.freedesktop.locale1";
constexpr const char* localeObject = "/org/freedesktop/locale1";
constexpr const char* localeInterface = "<node><interface name='org.freedesktop.locale1'>"
                                        "<property name='Locale' type='as' access='read'/>"
                                        "</interface></node>";

// The process has one connection, which may still be that of the test before.
bool isReached() {
    GDBusConnection* const connection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    if (connection == nullptr) {
        return false;
    }
    g_dbus_connection_set_exit_on_close(connection, FALSE);
    const bool isOpen = g_dbus_connection_is_closed(connection) == FALSE;
    g_object_unref(connection);
    return isOpen;
}

void own(GDBusConnection* connection, const char* name) {
    GVariant* const answer = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, nullptr);
    g_variant_unref(answer);
}

} // namespace

PrivateBus::PrivateBus()
    : m_bus(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    g_test_dbus_up(m_bus);
    m_address = g_test_dbus_get_bus_address(m_bus);
    m_variable.emplace("DBUS_SYSTEM_BUS_ADDRESS", m_address.c_str());
    runUntil(isReached);
}

PrivateBus::~PrivateBus() {
    stop();
    g_object_unref(m_bus);
}

void PrivateBus::stop() {
    if (m_isUp) {
        g_test_dbus_stop(m_bus);
        m_isUp = false;
    }
}

FakeSystemServices::FakeSystemServices(const PrivateBus& bus)
    : m_connection(g_dbus_connection_new_for_address_sync(
          bus.address().c_str(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, nullptr, nullptr)) {
    const GDBusInterfaceGetPropertyFunc getProperty = [](GDBusConnection*, const char*, const char*,
                                                         const char*, const char*, GError**,
                                                         gpointer data) {
        auto& self = *static_cast<FakeSystemServices*>(data);
        ++self.m_localeQuestions;
        return self.localeVariant();
    };
    const GDBusInterfaceVTable table{nullptr, getProperty, nullptr, {}};
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(localeInterface, nullptr);
    m_object = g_dbus_connection_register_object(m_connection, localeObject, node->interfaces[0],
                                                 &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    own(m_connection, loginService);
    own(m_connection, localeService);
}

FakeSystemServices::~FakeSystemServices() {
    g_dbus_connection_unregister_object(m_connection, m_object);
    g_dbus_connection_close_sync(m_connection, nullptr, nullptr);
    g_object_unref(m_connection);
}

GVariant* FakeSystemServices::localeVariant() const {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
    for (const std::string& assignment : m_locale) {
        g_variant_builder_add(&builder, "s", assignment.c_str());
    }
    return g_variant_builder_end(&builder);
}

void FakeSystemServices::emit(const char* object, const char* interface, const char* signal,
                              GVariant* parameters) const {
    g_dbus_connection_emit_signal(m_connection, nullptr, object, interface, signal, parameters,
                                  nullptr);
    g_dbus_connection_flush_sync(m_connection, nullptr, nullptr);
}

void FakeSystemServices::prepareForSleep(bool begins) const {
    emit("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
         g_variant_new("(b)", begins ? TRUE : FALSE));
}

void FakeSystemServices::setLocale(std::vector<std::string> assignments, bool withValue) {
    m_locale = std::move(assignments);
    GVariantBuilder changed;
    GVariantBuilder invalidated;
    g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_init(&invalidated, G_VARIANT_TYPE_STRING_ARRAY);
    if (withValue) {
        g_variant_builder_add(&changed, "{sv}", "Locale", localeVariant());
    } else {
        g_variant_builder_add(&invalidated, "s", "Locale");
    }
    emit(localeObject, "org.freedesktop.DBus.Properties", "PropertiesChanged",
         g_variant_new("(sa{sv}as)", localeService, &changed, &invalidated));
}

bool FakeSystemServices::hasListener(const char* service) const {
    GVariant* const answer = g_dbus_connection_call_sync(
        m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus",
        "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules", nullptr, G_VARIANT_TYPE("(a{sas})"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (answer == nullptr) {
        return false;
    }
    char* const rules = g_variant_print(answer, FALSE);
    const bool found = std::string(rules).find(service) != std::string::npos;
    g_free(rules);
    g_variant_unref(answer);
    return found;
}

} // namespace quorvel::testing_session
