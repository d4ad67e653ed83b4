#include "freedesktop/eds/library/posted_signal.h"

#include <utility>

namespace quorvel::freedesktop::eds {

gulong connectPosted(gpointer object, const char* signal, const Mailbox& mailbox,
                     std::function<void()> call) {
    struct Listener {
        Mailbox mailbox;
        std::function<void()> call;
    };
    using Handler = void (*)(gpointer, gpointer, const Listener*);
    const Handler handler = [](gpointer, gpointer, const Listener* listener) {
        listener->mailbox.post(listener->call);
    };
    const GClosureNotify end = [](gpointer listener, GClosure*) {
        delete static_cast<Listener*>(listener);
    };
    return g_signal_connect_data(object, signal, G_CALLBACK(handler),
                                 new Listener{mailbox, std::move(call)}, end,
                                 static_cast<GConnectFlags>(0));
}

} // namespace quorvel::freedesktop::eds
