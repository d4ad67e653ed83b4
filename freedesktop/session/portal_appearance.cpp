#include "freedesktop/session/portal_appearance.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/session_bus_address.h"
#include "freedesktop/glib/weak_reference.h"

namespace quorvel::freedesktop {

namespace {

constexpr const char* portalService = "org.freedesktop.portal.Desktop";
constexpr const char* portalObject = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearanceNamespace = "org.freedesktop.appearance";
constexpr const char* colorSchemeKey = "color-scheme";
constexpr const char* contrastKey = "contrast";

// The number in a value, which older portals put into one variant more than newer ones.
std::optional<std::uint32_t> numberIn(VariantHandle value) {
    constexpr int mostVariants = 3;
    for (int i = 0; i < mostVariants; ++i) {
        if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != 0) {
            value.reset(g_variant_get_variant(value.get()));
        }
    }
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) == 0) {
        return std::nullopt;
    }
    return g_variant_get_uint32(value.get());
}

// A number that the portal's interface does not define is no preference.
ColorScheme colorSchemeOf(std::uint32_t number) {
    switch (number) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return ColorScheme::noPreference;
    }
}

// Sets the preference of that key; without effect for another key or type.
void setPreference(PortalPreferences& preferences, std::string_view key, VariantHandle value) {
    const auto number = numberIn(std::move(value));
    if (!number) {
        return;
    }
    if (key == colorSchemeKey) {
        preferences.colorScheme = colorSchemeOf(*number);
    } else if (key == contrastKey) {
        preferences.highContrast = *number == 1;
    }
}

} // namespace

// GIO calls back even after cancellation, so its callbacks have only a weak reference.
class PortalAppearance::Connection : public std::enable_shared_from_this<Connection> {
public:
    explicit Connection(std::function<void()> onChange)
        : m_onChange(std::move(onChange))
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
        m_request.emplace([this](BusHandle bus) {
            if (bus) {
                listen(std::move(bus));
            }
        });
    }
    const PortalPreferences& preferences() const { return m_preferences; }

private:
    // One key that is being read. Older portals have only the method "Read".
    struct Reading {
        std::weak_ptr<Connection> connection;
        const char* key;
        bool isSecondTry;
    };

    void listen(BusHandle bus);
    void subscribe(const char* service, const char* interface, const char* signal,
                   const char* object, const char* firstArgument, GDBusSignalCallback call) {
        m_subscriptions.push_back(g_dbus_connection_signal_subscribe(
            m_bus.get(), service, interface, signal, object, firstArgument,
            G_DBUS_SIGNAL_FLAGS_NONE, call, newWeakReference(weak_from_this()),
            freeWeakReference<Connection>));
    }
    void readAll() {
        read(colorSchemeKey, false);
        read(contrastKey, false);
    }
    void read(const char* key, bool isSecondTry);
    static void replied(GObject* bus, GAsyncResult* result, gpointer data);
    void set(std::string_view key, VariantHandle value) {
        const PortalPreferences before = m_preferences;
        setPreference(m_preferences, key, std::move(value));
        if (m_preferences != before) {
            m_onChange();
        }
    }

    std::function<void()> m_onChange;
    ObjectHandle<GCancellable> m_cancellable;
    std::optional<SessionBusRequest> m_request; // absent before open()
    BusHandle m_bus;                            // null before it is open
    std::vector<guint> m_subscriptions;
    PortalPreferences m_preferences;
};

void PortalAppearance::Connection::listen(BusHandle bus) {
    m_bus = std::move(bus);
    const GDBusSignalCallback changed = [](GDBusConnection*, const char*, const char*, const char*,
                                           const char*, GVariant* parameters, gpointer data) {
        const auto self = lockWeakReference<Connection>(data);
        if (!self || g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)")) == 0) {
            return;
        }
        const VariantHandle key(g_variant_get_child_value(parameters, 1));
        self->set(g_variant_get_string(key.get(), nullptr),
                  VariantHandle(g_variant_get_child_value(parameters, 2)));
    };
    subscribe(portalService, settingsInterface, "SettingChanged", portalObject, appearanceNamespace,
              changed);

    // A portal that starts late, or again, may have other values.
    const GDBusSignalCallback ownerChanged = [](GDBusConnection*, const char*, const char*,
                                                const char*, const char*, GVariant* parameters,
                                                gpointer data) {
        const auto self = lockWeakReference<Connection>(data);
        if (!self || g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sss)")) == 0) {
            return;
        }
        const VariantHandle owner(g_variant_get_child_value(parameters, 2));
        if (*g_variant_get_string(owner.get(), nullptr) != '\0') {
            self->readAll();
        }
    };
    subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
              "/org/freedesktop/DBus", portalService, ownerChanged);
    readAll();
}

void PortalAppearance::Connection::read(const char* key, bool isSecondTry) {
    g_dbus_connection_call(m_bus.get(), portalService, portalObject, settingsInterface,
                           isSecondTry ? "Read" : "ReadOne",
                           g_variant_new("(ss)", appearanceNamespace, key), G_VARIANT_TYPE("(v)"),
                           G_DBUS_CALL_FLAGS_NONE, longestAnswer, m_cancellable.get(), replied,
                           new Reading{weak_from_this(), key, isSecondTry});
}

void PortalAppearance::Connection::replied(GObject* bus, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Reading> reading(static_cast<Reading*>(data));
    GError* problem = nullptr;
    const VariantHandle reply(
        g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &problem));
    const ErrorHandle error(problem);
    const auto self = reading->connection.lock();
    if (!self) {
        return;
    }
    if (reply) {
        self->set(reading->key, VariantHandle(g_variant_get_child_value(reply.get(), 0)));
    } else if (!reading->isSecondTry &&
               g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) != 0) {
        self->read(reading->key, true);
    }
}

PortalAppearance::PortalAppearance(std::function<void()> onChange)
    : m_connection(std::make_shared<Connection>(std::move(onChange))) {
    if (mayHaveSessionBus()) {
        m_connection->open();
    }
}

PortalAppearance::~PortalAppearance() = default;

const PortalPreferences& PortalAppearance::preferences() const {
    return m_connection->preferences();
}

} // namespace quorvel::freedesktop
