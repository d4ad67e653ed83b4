// Signals of the library's objects, which come on threads of its choice.
#pragma once

#include <functional>

#include <glib-object.h>

#include "freedesktop/eds/library/worker_loop.h"

namespace quorvel::freedesktop::eds {

// Posts the call each time that the signal comes, which has one argument beside its object, until
// the handler is disconnected; what was posted before still runs. Returns the handler.
gulong connectPosted(gpointer object, const char* signal, const Mailbox& mailbox,
                     std::function<void()> call);

} // namespace quorvel::freedesktop::eds
