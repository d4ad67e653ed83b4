// Signals of the library's objects, which come on threads of its choice.
#pragma once

#include <functional>

#include <glib-object.h>

#include "freedesktop/calendars/server/library/worker_loop.h"

namespace quorvel::freedesktop::eds {

// Posts the call each time the signal is emitted, on whatever thread and with whatever arguments,
// until the handler is disconnected; a call that was posted before still runs. A call that uses an
// object binds a weak pointer to it, as the object may be gone by then. Returns the handler.
gulong connectPosted(gpointer object, const char* signal, const Mailbox& mailbox,
                     std::function<void()> call);

} // namespace quorvel::freedesktop::eds
