// Signals of the system bus: resuming from sleep, and changes of the system's locale.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

struct SystemBusEvents {
    std::function<void()> onResume;
    // Gets the assignments of the system's locale, "LC_TIME=de_DE.UTF-8". Null: not followed.
    std::function<void(std::vector<std::string>)> onLocale;
};

// Calls on the default main context of the thread that constructs it. Without a system bus or the
// services it never calls.
class SystemBusSignals {
public:
    explicit SystemBusSignals(SystemBusEvents events);
    ~SystemBusSignals(); // no function is called afterwards
    SystemBusSignals(const SystemBusSignals&) = delete;
    SystemBusSignals& operator=(const SystemBusSignals&) = delete;

private:
    class Connection;
    std::shared_ptr<Connection> m_connection;
};

} // namespace quorvel::freedesktop
