#include "freedesktop/glib/session_bus.h"

#include <utility>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/weak_reference.h"

namespace quorvel::freedesktop {

namespace {

constexpr double longestConnecting = 2; // seconds

// By default the library ends the process when the bus closes the connection.
void outliveBus(GDBusConnection* bus) {
    if (bus != nullptr) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
    }
}

} // namespace

// The library calls back even after cancellation, so its callback has only a weak reference.
class SessionBusRequest::Connecting : public std::enable_shared_from_this<Connecting> {
public:
    explicit Connecting(OnAnswer onAnswer)
        : m_onAnswer(std::move(onAnswer))
        , m_cancellable(g_cancellable_new()) {}
    ~Connecting() { g_cancellable_cancel(m_cancellable.get()); }
    Connecting(const Connecting&) = delete;
    Connecting& operator=(const Connecting&) = delete;

    void begin() {
        m_deadline.start(longestConnecting);
        g_bus_get(G_BUS_TYPE_SESSION, m_cancellable.get(), connected,
                  newWeakReference(weak_from_this()));
    }

private:
    static void connected(GObject*, GAsyncResult* result, gpointer data) {
        BusHandle bus(g_bus_get_finish(result, nullptr));
        outliveBus(bus.get());
        if (const auto self = takeWeakReference<Connecting>(data)) {
            self->end(std::move(bus));
        }
    }
    void end(BusHandle bus) {
        m_deadline.stop();
        if (const OnAnswer onAnswer = std::exchange(m_onAnswer, nullptr)) {
            onAnswer(std::move(bus));
        }
    }

    OnAnswer m_onAnswer; // null once it was called
    ObjectHandle<GCancellable> m_cancellable;
    DelayedCall m_deadline{[this] { end(nullptr); }};
};

SessionBusRequest::SessionBusRequest(OnAnswer onAnswer)
    : m_connecting(std::make_shared<Connecting>(std::move(onAnswer))) {
    m_connecting->begin();
}

SessionBusRequest::~SessionBusRequest() = default;

BusHandle waitForSessionBus() {
    bool isAnswered = false;
    BusHandle bus;
    const SessionBusRequest request([&](BusHandle answer) {
        bus = std::move(answer);
        isAnswered = true;
    });
    while (!isAnswered) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return bus;
}

Result<BusHandle> connectToSessionBus(GCancellable* cancellable) {
    GError* problem = nullptr;
    BusHandle bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, &problem));
    const ErrorHandle error(problem);
    if (!bus) {
        return Error{messageOf(error), {}, {}};
    }
    outliveBus(bus.get());
    return bus;
}

VariantHandle callAndWait(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
                          const char* answerType, int milliseconds, GCancellable* cancellable) {
    return VariantHandle(g_dbus_connection_call_sync(
        bus, method.service, method.object, method.interface, method.name, parameters,
        G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NONE, milliseconds, cancellable, nullptr));
}

} // namespace quorvel::freedesktop
