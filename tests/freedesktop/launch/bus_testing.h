// Services on the test's session bus with the replies that a test needs, and a bus that never
// replies.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>

namespace quorvel::testing_launch {

// What the service answers to a method; null for an answer without values, absent for none at all.
using Answer = std::function<std::optional<GVariant*>(const std::string& method, GVariant* values)>;

// One object with one interface, under a name that it owns for as long as it lives. It answers
// while the default main context runs.
class FakeService {
public:
    FakeService(const char* name, const char* object, const char* interfaceXml, Answer answer);
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // Each as "Method(value, value)".
    const std::vector<std::string>& calls() const { return m_calls; }

private:
    static void called(GDBusConnection*, const char*, const char*, const char*, const char* method,
                       GVariant* values, GDBusMethodInvocation* invocation, gpointer self);

    GDBusConnection* m_bus;
    guint m_object = 0;
    Answer m_answer;
    std::vector<std::string> m_calls;
    std::vector<GDBusMethodInvocation*> m_unanswered;
};

// org.freedesktop.Application at /org/example/Bus; `answers` false: it takes calls and is silent.
class BusApplication : public FakeService {
public:
    explicit BusApplication(bool answers = true);
};

// A socket that accepts connections and never answers.
class SilentBus {
public:
    explicit SilentBus(const std::filesystem::path& folder);
    ~SilentBus();
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    const std::string& address() const { return m_address; }
    int connections(); // so far

private:
    int m_socket;
    std::string m_address;
    std::vector<int> m_connections;
};

} // namespace quorvel::testing_launch
