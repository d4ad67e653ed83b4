// Calls methods on a message bus that is not the test's own.
#pragma once

#include <memory>
#include <string>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::phosh {

struct Method {
    std::string service;
    std::string object;
    std::string interface;
    std::string name;
};

class BusClient {
public:
    // Waits until the bus accepts a client; throws std::runtime_error where it does not.
    BusClient(const std::string& address, double seconds);

    bool waitForService(const std::string& name, double seconds) const;
    // The reply; null where the call failed. Takes floating arguments, null for none.
    freedesktop::VariantHandle call(const Method& method, GVariant* arguments = nullptr) const;

private:
    freedesktop::ObjectHandle<GDBusConnection> m_connection;
};

} // namespace quorvel::phosh
