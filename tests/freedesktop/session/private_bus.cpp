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
bool isReached(GBusType kind) {
    GDBusConnection* const connection = g_bus_get_sync(kind, nullptr, nullptr);
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

GDBusConnection* connectTo(const PrivateBus& bus) {
    return g_dbus_connection_new_for_address_sync(
        bus.address().c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
}

} // namespace

PrivateBus::PrivateBus(GBusType kind)
    : m_bus(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    g_test_dbus_up(m_bus);
    m_address = g_test_dbus_get_bus_address(m_bus);
    m_variable.emplace(kind == G_BUS_TYPE_SYSTEM ? "DBUS_SYSTEM_BUS_ADDRESS"
                                                 : "DBUS_SESSION_BUS_ADDRESS",
                       m_address.c_str());
    runUntil([kind] { return isReached(kind); });
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
    : m_connection(connectTo(bus)) {
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

FakePortal::FakePortal(const PrivateBus& bus, Version version)
    : m_version(version)
    , m_connection(connectTo(bus)) {
    constexpr const char* method = "<method name='%s'><arg type='s' direction='in'/>"
                                   "<arg type='s' direction='in'/>"
                                   "<arg type='v' direction='out'/></method>";
    const auto methodNamed = [&](const char* name) {
        char* const text = g_strdup_printf(method, name);
        std::string result = text;
        g_free(text);
        return result;
    };
    const std::string interface =
        "<node><interface name='org.freedesktop.portal.Settings'>" + methodNamed("Read") +
        (version == Version::one ? "" : methodNamed("ReadOne")) + "</interface></node>";
    const GDBusInterfaceVTable table{handle, nullptr, nullptr, {}};
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interface.c_str(), nullptr);
    m_object =
        g_dbus_connection_register_object(m_connection, "/org/freedesktop/portal/desktop",
                                          node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    own(m_connection, "org.freedesktop.portal.Desktop");
}

FakePortal::~FakePortal() {
    for (GDBusMethodInvocation* const call : m_unanswered) {
        g_object_unref(call);
    }
    g_dbus_connection_unregister_object(m_connection, m_object);
    g_dbus_connection_close_sync(m_connection, nullptr, nullptr);
    g_object_unref(m_connection);
}

void FakePortal::handle(GDBusConnection*, const char*, const char*, const char*, const char* method,
                        GVariant* parameters, GDBusMethodInvocation* call, gpointer self) {
    GVariant* const key = g_variant_get_child_value(parameters, 1);
    static_cast<FakePortal*>(self)->answer(method, g_variant_get_string(key, nullptr), call);
    g_variant_unref(key);
}

void FakePortal::answer(const std::string& method, const std::string& key,
                        GDBusMethodInvocation* call) {
    ++m_calls;
    const auto value = m_values.find(key);
    if (m_version == Version::hanging) {
        m_unanswered.push_back(call);
    } else if (m_version == Version::faulty) {
        g_dbus_method_invocation_return_value(call,
                                              g_variant_new("(v)", g_variant_new_string("dark")));
    } else if (value == m_values.end()) {
        g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.portal.Error.NotFound",
                                                   "Requested setting not found");
    } else {
        GVariant* boxed = g_variant_new_uint32(value->second);
        if (method == "Read") {
            boxed = g_variant_new_variant(boxed);
        }
        g_dbus_method_invocation_return_value(call, g_variant_new("(v)", boxed));
    }
}

void FakePortal::emitChange(const char* settingsNamespace, const char* key, GVariant* value) const {
    g_dbus_connection_emit_signal(m_connection, nullptr, "/org/freedesktop/portal/desktop",
                                  "org.freedesktop.portal.Settings", "SettingChanged",
                                  g_variant_new("(ssv)", settingsNamespace, key, value), nullptr);
    g_dbus_connection_flush_sync(m_connection, nullptr, nullptr);
}

} // namespace quorvel::testing_session
