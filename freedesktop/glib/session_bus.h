// Connects to the session's message bus within bounded time. Only for the folders that wrap GIO.
#pragma once

#include <functional>
#include <memory>

#include <gio/gio.h>

#include "base/result.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

using BusHandle = ObjectHandle<GDBusConnection>;

constexpr int longestAnswer = 3000; // milliseconds that a desktop service has for its reply
constexpr int standardAnswer = -1;  // the library's default, 25 seconds

// Connects on the default main context, within a few seconds.
class SessionBusRequest {
public:
    // Called once while the default main context runs. The bus is null if there is none or it does
    // not answer. The process outlives a bus that closes the connection.
    using OnAnswer = std::function<void(BusHandle bus)>;

    explicit SessionBusRequest(OnAnswer onAnswer);
    ~SessionBusRequest(); // the function is not called afterwards
    SessionBusRequest(const SessionBusRequest&) = delete;
    SessionBusRequest& operator=(const SessionBusRequest&) = delete;

private:
    class Connecting;
    std::shared_ptr<Connecting> m_connecting;
};

// Runs the default main context until a SessionBusRequest is answered. Null in the same cases.
BusHandle waitForSessionBus();

// Blocks until the bus answers or another thread cancels. The bus is not null. The `what` of the
// error is the library's message.
Result<BusHandle> connectToSessionBus(GCancellable* cancellable);

struct BusMethod {
    const char* service;
    const char* object;
    const char* interface;
    const char* name;
};

// Blocks until the reply arrives, another thread cancels, or the time is over. Takes ownership of
// floating parameters, which may be null. Returns null if no reply of that type arrived.
VariantHandle callAndWait(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
                          const char* answerType, int milliseconds,
                          GCancellable* cancellable = nullptr);

} // namespace quorvel::freedesktop
