#include "freedesktop/glib/session_bus.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "freedesktop/glib/call_after.h"
#include "freedesktop/glib/weak_reference.h"

namespace quorvel::freedesktop {

namespace {

constexpr double longestConnecting = 2;               // seconds
constexpr std::string_view disabledBus = "disabled:"; // the address of no bus

// A bus that goes away is no reason for the whole program to end.
void outliveBus(GDBusConnection* bus) {
    if (bus != nullptr) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
    }
}

} // namespace

bool mayHaveSessionBus() {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') {
        return std::string_view(address) != disabledBus;
    }
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder != nullptr && access((std::string(folder) + "/bus").c_str(), F_OK) == 0;
}

// The library's callback finds it by a weak reference: it also comes, as cancelled, after its end.
class SessionBusRequest::Connecting : public std::enable_shared_from_this<Connecting> {
public:
    explicit Connecting(Answer answer)
        : m_answer(std::move(answer))
        , m_cancellable(g_cancellable_new()) {}
    ~Connecting() { g_cancellable_cancel(m_cancellable.get()); }
    Connecting(const Connecting&) = delete;
    Connecting& operator=(const Connecting&) = delete;

    void begin() {
        m_deadline = callAfter(longestConnecting, [reference = weak_from_this()] {
            if (const auto self = reference.lock()) {
                self->end(nullptr);
            }
        });
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
        m_deadline.reset();
        if (const Answer answer = std::exchange(m_answer, nullptr)) {
            answer(std::move(bus));
        }
    }

    Answer m_answer; // null once it was called
    ObjectHandle<GCancellable> m_cancellable;
    SourceHandle m_deadline;
};

SessionBusRequest::SessionBusRequest(Answer answer)
    : m_connecting(std::make_shared<Connecting>(std::move(answer))) {
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

BusHandle connectToSessionBus(GCancellable* cancellable, ErrorHandle& error) {
    GError* problem = nullptr;
    BusHandle bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, &problem));
    error.reset(problem);
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
