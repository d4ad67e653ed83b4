// A message bus of the test's own, in the place of the system's, and services on it that say what
// the test wants.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::testing_session {

class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return m_address; }
    void stop(); // its clients are cut off

private:
    GTestDBus* m_bus;
    std::string m_address;
    std::optional<EnvironmentVariable> m_variable;
    bool m_isUp = true;
};

// The services that report sleep and the system's locale, both on one connection.
class FakeSystemServices {
public:
    explicit FakeSystemServices(const PrivateBus& bus);
    ~FakeSystemServices();
    FakeSystemServices(const FakeSystemServices&) = delete;
    FakeSystemServices& operator=(const FakeSystemServices&) = delete;

    void prepareForSleep(bool begins) const;
    // Tells that the property has changed, with its value or without.
    void setLocale(std::vector<std::string> assignments, bool withValue);
    void emit(const char* object, const char* interface, const char* signal,
              GVariant* parameters) const;
    // Whether a client listens for the signals of the service.
    bool hasListener(const char* service) const;
    int localeQuestions() const { return m_localeQuestions; }

private:
    GVariant* localeVariant() const;

    GDBusConnection* m_connection;
    guint m_object = 0;
    std::vector<std::string> m_locale;
    int m_localeQuestions = 0;
};

} // namespace quorvel::testing_session
