// A message bus of the test's own with the desktop's real secret service, whose secrets are in the
// test's folder.
#pragma once

#include <map>
#include <string>

#include <gio/gio.h>
#include <sys/types.h>

namespace quorvel::app {

class SecretService {
public:
    // `environment` is that of the service, and gets the address of the bus. Throws if the service
    // does not start.
    SecretService(std::map<std::string, std::string>& environment, const std::string& folder);
    ~SecretService();
    SecretService(const SecretService&) = delete;
    SecretService& operator=(const SecretService&) = delete;

    int secretCount() const;

private:
    bool hasStarted() const;

    GTestDBus* m_bus;
    GDBusConnection* m_connection = nullptr;
    pid_t m_process = 0;
};

} // namespace quorvel::app
