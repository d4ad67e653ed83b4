// Connects functions to signals of GObject, for as long as an object lives.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <glib-object.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::settings_pages {

// Belongs to the thread of the signals. A function must not throw, as GTK calls it.
class SignalConnections {
public:
    SignalConnections() = default;
    ~SignalConnections(); // the functions are not called afterwards
    SignalConnections(const SignalConnections&) = delete;
    SignalConnections& operator=(const SignalConnections&) = delete;

    // The arguments of the signal are ignored; it must not expect a result.
    void connect(gpointer object, const char* signal, std::function<void()> call);

private:
    struct Connection {
        freedesktop::ObjectHandle<GObject> object;
        gulong handler;
    };
    std::vector<Connection> m_connections;
};

} // namespace quorvel::settings_pages
