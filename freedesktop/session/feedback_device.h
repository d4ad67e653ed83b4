// Short vibrations of a phone, through the desktop's feedback service.
#pragma once

#include <optional>

#include "freedesktop/glib/session_bus.h"

namespace quorvel::freedesktop {

// For one thread, while its default main context runs.
class FeedbackDevice {
public:
    // What the user feels when a button is pressed. Returns at once; nothing happens without a bus,
    // service or motor. A press during the connecting to the bus counts once.
    void press();

private:
    BusHandle m_bus; // null before the first press; its last message leaves while it is open
    std::optional<SessionBusRequest> m_request; // while it connects to the bus
};

} // namespace quorvel::freedesktop
