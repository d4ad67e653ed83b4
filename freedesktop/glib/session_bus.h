// The session's message bus, which may not answer: nothing waits for it without a bound. For the
// folders that wrap GIO.
#pragma once

#include <functional>
#include <memory>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

using BusHandle = ObjectHandle<GDBusConnection>;

constexpr int longestAnswer = 3000; // milliseconds that a service of the desktop may take
constexpr int standardAnswer = -1;  // as many as the library allows, 25 seconds

// By the environment alone: false means that there is no session bus to wait for. Never starts a
// bus.
bool mayHaveSessionBus();

// Connects on the default main context, within a few seconds.
class SessionBusRequest {
public:
    // Called once while the default main context runs, and not after the request's end. The bus is
    // null where there is none or it does not answer. Its end does not end the process.
    using Answer = std::function<void(BusHandle bus)>;

    explicit SessionBusRequest(Answer answer);
    ~SessionBusRequest();
    SessionBusRequest(const SessionBusRequest&) = delete;
    SessionBusRequest& operator=(const SessionBusRequest&) = delete;

private:
    class Connecting;
    std::shared_ptr<Connecting> m_connecting;
};

// Runs the default main context until SessionBusRequest has its answer. Null as there.
BusHandle waitForSessionBus();

// Blocks until the bus answers or another thread cancels. The error is set where the bus is null.
BusHandle connectToSessionBus(GCancellable* cancellable, ErrorHandle& error);

struct BusMethod {
    const char* service;
    const char* object;
    const char* interface;
    const char* name;
};

// Blocks until the answer is there, another thread cancels, or the time is over. Takes over
// floating parameters; null: none. Null where no answer of that type came.
VariantHandle callAndWait(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
                          const char* answerType, int milliseconds,
                          GCancellable* cancellable = nullptr);

} // namespace quorvel::freedesktop
