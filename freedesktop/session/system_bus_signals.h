// What the system's services tell of sleep and of the system's locale.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

struct SystemBusEvents {
    std::function<void()> resumed;
    // The assignments of the system's locale, "LC_TIME=de_DE.UTF-8"; null: nobody asks.
    std::function<void(std::vector<std::string>)> localeChanged;
};

// On the default main context of the thread that makes this. Where there is no system bus, or
// nobody on it, nothing is told.
class SystemBusSignals {
public:
    explicit SystemBusSignals(SystemBusEvents events);
    ~SystemBusSignals(); // nothing is called afterwards
    SystemBusSignals(const SystemBusSignals&) = delete;
    SystemBusSignals& operator=(const SystemBusSignals&) = delete;

private:
    class Connection;
    std::shared_ptr<Connection> m_connection;
};

} // namespace quorvel::freedesktop
