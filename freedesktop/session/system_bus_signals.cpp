#include "freedesktop/session/system_bus_signals.h"

#include <string_view>
#include <utility>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/glib/weak_reference.h"

namespace quorvel::freedesktop {

namespace {

constexpr const char* localeService = "org.freedesktop.locale1";
constexpr const char* localeObject = "/org/freedesktop/locale1";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

// Whether a PropertiesChanged signal has a new locale or invalidates the old one.
bool mentionsLocale(GVariant* parameters) {
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)")) == 0) {
        return false;
    }
    const VariantHandle changed(g_variant_get_child_value(parameters, 1));
    const VariantHandle value(g_variant_lookup_value(changed.get(), "Locale", nullptr));
    const VariantHandle invalidated(g_variant_get_child_value(parameters, 2));
    bool mentions = value != nullptr;
    for (gsize i = 0; i < g_variant_n_children(invalidated.get()); ++i) {
        const VariantHandle name(g_variant_get_child_value(invalidated.get(), i));
        mentions =
            mentions || std::string_view(g_variant_get_string(name.get(), nullptr)) == "Locale";
    }
    return mentions;
}

// From the reply "(v)", which contains an array of texts.
std::vector<std::string> assignmentsOf(GVariant* reply) {
    std::vector<std::string> assignments;
    const VariantHandle boxed(g_variant_get_child_value(reply, 0));
    const VariantHandle value(g_variant_get_variant(boxed.get()));
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY) != 0) {
        for (gsize i = 0; i < g_variant_n_children(value.get()); ++i) {
            const VariantHandle text(g_variant_get_child_value(value.get(), i));
            assignments.emplace_back(g_variant_get_string(text.get(), nullptr));
        }
    }
    return assignments;
}

} // namespace

// GIO calls back even after cancellation, so its callbacks have only a weak reference.
class SystemBusSignals::Connection : public std::enable_shared_from_this<Connection> {
public:
    explicit Connection(SystemBusEvents events)
        : m_events(std::move(events))
        , m_cancellable(g_cancellable_new()) {}
    ~Connection() {
        g_cancellable_cancel(m_cancellable.get());
        for (const guint subscription : m_subscriptions) {
            g_dbus_connection_signal_unsubscribe(m_bus.get(), subscription);
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void open() {
        const GAsyncReadyCallback opened = [](GObject*, GAsyncResult* result, gpointer data) {
            ObjectHandle<GDBusConnection> bus(g_bus_get_finish(result, nullptr));
            if (const auto self = takeWeakReference<Connection>(data); self && bus) {
                self->listen(std::move(bus));
            }
        };
        g_bus_get(G_BUS_TYPE_SYSTEM, m_cancellable.get(), opened,
                  newWeakReference(weak_from_this()));
    }

private:
    void listen(ObjectHandle<GDBusConnection> bus);
    void subscribe(const char* service, const char* interface, const char* signal,
                   const char* object, const char* firstArgument, GDBusSignalCallback call) {
        m_subscriptions.push_back(g_dbus_connection_signal_subscribe(
            m_bus.get(), service, interface, signal, object, firstArgument,
            G_DBUS_SIGNAL_FLAGS_NONE, call, newWeakReference(weak_from_this()),
            freeWeakReference<Connection>));
    }
    void requestLocale();

    SystemBusEvents m_events;
    ObjectHandle<GCancellable> m_cancellable;
    ObjectHandle<GDBusConnection> m_bus; // null before it is open
    std::vector<guint> m_subscriptions;
};

void SystemBusSignals::Connection::listen(ObjectHandle<GDBusConnection> bus) {
    m_bus = std::move(bus);
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);

    const GDBusSignalCallback sleepChanged = [](GDBusConnection*, const char*, const char*,
                                                const char*, const char*, GVariant* parameters,
                                                gpointer data) {
        if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == 0) {
            return;
        }
        gboolean begins = TRUE;
        g_variant_get(parameters, "(b)", &begins);
        if (const auto self = lockWeakReference<Connection>(data); self && begins == FALSE) {
            self->m_events.onResume();
        }
    };
    subscribe("org.freedesktop.login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
              "/org/freedesktop/login1", nullptr, sleepChanged);

    const GDBusSignalCallback propertiesChanged = [](GDBusConnection*, const char*, const char*,
                                                     const char*, const char*, GVariant* parameters,
                                                     gpointer data) {
        if (const auto self = lockWeakReference<Connection>(data);
            self && mentionsLocale(parameters)) {
            self->requestLocale();
        }
    };
    if (m_events.onLocale) {
        subscribe(localeService, propertiesInterface, "PropertiesChanged", localeObject,
                  localeService, propertiesChanged);
    }
}

void SystemBusSignals::Connection::requestLocale() {
    constexpr int longestWait = 10000; // milliseconds
    const GAsyncReadyCallback replied = [](GObject* bus, GAsyncResult* result, gpointer data) {
        const VariantHandle reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
        if (const auto self = takeWeakReference<Connection>(data); self && reply) {
            self->m_events.onLocale(assignmentsOf(reply.get()));
        }
    };
    g_dbus_connection_call(m_bus.get(), localeService, localeObject, propertiesInterface, "Get",
                           g_variant_new("(ss)", localeService, "Locale"), G_VARIANT_TYPE("(v)"),
                           G_DBUS_CALL_FLAGS_NONE, longestWait, m_cancellable.get(), replied,
                           newWeakReference(weak_from_this()));
}

SystemBusSignals::SystemBusSignals(SystemBusEvents events)
    : m_connection(std::make_shared<Connection>(std::move(events))) {
    m_connection->open();
}

SystemBusSignals::~SystemBusSignals() = default;

} // namespace quorvel::freedesktop
