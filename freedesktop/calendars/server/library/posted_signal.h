// Signals of the library's objects, which the library emits on any thread.
#pragma once

#include <functional>

#include <glib-object.h>

#include "freedesktop/calendars/server/library/worker_loop.h"

namespace quorvel::freedesktop::eds {

// Posts the call whenever the signal is emitted, on any thread and with any arguments, until the
// handler is disconnected; a call that was posted before still runs. A call that uses an object
// binds a weak pointer to it, as the object may have been destroyed by then. Returns the handler.
gulong connectPosted(gpointer object, const char* signal, const Mailbox& mailbox,
                     std::function<void()> call);

} // namespace quorvel::freedesktop::eds
