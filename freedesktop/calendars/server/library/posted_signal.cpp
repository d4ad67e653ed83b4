#include "freedesktop/calendars/server/library/posted_signal.h"

#include <utility>

namespace quorvel::freedesktop::eds {

namespace {

struct Listener {
    Mailbox mailbox;
    std::function<void()> call;
};

void post(GClosure* closure, GValue*, guint, const GValue*, gpointer, gpointer) {
    const auto* const listener = static_cast<const Listener*>(closure->data);
    listener->mailbox.post(listener->call);
}

} // namespace

// A marshaller of its own leaves the arguments aside, so that any signal fits.
gulong connectPosted(gpointer object, const char* signal, const Mailbox& mailbox,
                     std::function<void()> call) {
    auto* const listener = new Listener{mailbox, std::move(call)};
    GClosure* const closure = g_closure_new_simple(sizeof(GClosure), listener);
    g_closure_add_finalize_notifier(
        closure, listener, [](gpointer data, GClosure*) { delete static_cast<Listener*>(data); });
    g_closure_set_marshal(closure, post);
    return g_signal_connect_closure(object, signal, closure, FALSE);
}

} // namespace quorvel::freedesktop::eds
