// A message bus of the test's own, in the place of the system's or the session's, and services on
// it that answer what the test wants.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::testing_session {

class PrivateBus {
public:
    explicit PrivateBus(GBusType kind = G_BUS_TYPE_SYSTEM); // or G_BUS_TYPE_SESSION
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
    // Reports that the property has changed, with its value or without.
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

// The desktop's portal with its settings of the appearance.
class FakePortal {
public:
    enum class Version {
        one, // has only "Read", which puts a value into two variants
        two,
        hanging, // never replies
        faulty   // replies texts
    };

    FakePortal(const PrivateBus& bus, Version version);
    ~FakePortal();
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    // Without a signal.
    void set(const std::string& key, guint32 value) { m_values[key] = value; }
    // Takes ownership of the floating value.
    void emitChange(const char* settingsNamespace, const char* key, GVariant* value) const;
    void change(const char* key, guint32 value) {
        set(key, value);
        emitChange("org.freedesktop.appearance", key, g_variant_new_uint32(value));
    }
    int calls() const { return m_calls; }

private:
    static void handle(GDBusConnection*, const char*, const char*, const char*, const char* method,
                       GVariant* parameters, GDBusMethodInvocation* call, gpointer self);
    void answer(const std::string& method, const std::string& key, GDBusMethodInvocation* call);

    Version m_version;
    GDBusConnection* m_connection;
    guint m_object = 0;
    std::map<std::string, guint32> m_values;
    std::vector<GDBusMethodInvocation*> m_unanswered;
    int m_calls = 0;
};

} // namespace quorvel::testing_session
