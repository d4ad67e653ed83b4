// The session bus, which may be silent: nothing waits for it longer than a few seconds. For this
// folder alone.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/launch/gio_handles.h"

namespace quorvel::freedesktop::launch {

using BusHandle = ObjectHandle<GDBusConnection>;

constexpr int longestAnswer = 3000; // milliseconds, of a service of the desktop's

// Answered once while the default main context runs, never once it is gone.
class SessionBusRequest {
public:
    // The bus is null where there is none, or where it does not answer.
    using Answer = std::function<void(BusHandle bus)>;

    explicit SessionBusRequest(Answer answer);
    ~SessionBusRequest();
    SessionBusRequest(const SessionBusRequest&) = delete;
    SessionBusRequest& operator=(const SessionBusRequest&) = delete;

private:
    class Connecting;
    std::shared_ptr<Connecting> m_connecting;
};

// Runs the default main context until there is an answer. Null as above.
BusHandle waitForSessionBus();

} // namespace quorvel::freedesktop::launch
