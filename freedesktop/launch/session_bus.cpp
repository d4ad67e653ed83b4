#include "freedesktop/launch/session_bus.h"

#include <utility>

#include "freedesktop/launch/timer.h"

namespace quorvel::freedesktop::launch {

namespace {

constexpr double longestConnecting = 2; // seconds

} // namespace

// The library's reply finds it by a weak reference: it comes, as cancelled, also when it is gone.
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
                  new std::weak_ptr(weak_from_this()));
    }

private:
    static void connected(GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::weak_ptr<Connecting>> reference(
            static_cast<std::weak_ptr<Connecting>*>(data));
        BusHandle bus(g_bus_get_finish(result, nullptr));
        if (bus) {
            // A bus that goes away is no reason for the whole program to end.
            g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        }
        if (const auto self = reference->lock()) {
            self->end(std::move(bus));
        }
    }
    void end(BusHandle bus) {
        m_deadline.reset();
        if (const Answer answer = std::exchange(m_answer, nullptr)) {
            answer(std::move(bus));
        }
    }

    Answer m_answer; // null once it was given
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

} // namespace quorvel::freedesktop::launch
