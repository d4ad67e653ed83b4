#include "shells/settings/signal_connections.h"

#include <utility>

namespace quorvel::settings_pages {

namespace {

// The function may destroy its own connection: it runs on a copy.
void run(const std::function<void()>* call) noexcept {
    const std::function<void()> copy = *call;
    copy();
}

void destroy(gpointer call, GClosure*) {
    delete static_cast<std::function<void()>*>(call);
}

} // namespace

SignalConnections::~SignalConnections() {
    for (const Connection& connection : m_connections) {
        if (g_signal_handler_is_connected(connection.object.get(), connection.handler) != FALSE) {
            g_signal_handler_disconnect(connection.object.get(), connection.handler);
        }
    }
}

void SignalConnections::connect(gpointer object, const char* signal, std::function<void()> call) {
    auto owned = std::make_unique<std::function<void()>>(std::move(call));
    // Swapped, the function comes first, so that the signal's own arguments can be left out.
    const gulong handler = g_signal_connect_data(object, signal, G_CALLBACK(run), owned.release(),
                                                 destroy, G_CONNECT_SWAPPED);
    m_connections.push_back({freedesktop::share(G_OBJECT(object)), handler});
}

} // namespace quorvel::settings_pages
