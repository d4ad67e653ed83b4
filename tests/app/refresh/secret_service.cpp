#include "tests/app/refresh/secret_service.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace quorvel::app {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";

pid_t spawn(std::vector<std::string> words, const std::map<std::string, std::string>& environment,
            const std::string& input) {
    std::vector<std::string> settings;
    for (const auto& [name, value] : environment) {
        settings.push_back(name + "=" + value);
    }
    const auto pointers = [](std::vector<std::string>& texts) {
        std::vector<char*> result;
        for (std::string& text : texts) {
            result.push_back(text.data());
        }
        result.push_back(nullptr);
        return result;
    };
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int failure = posix_spawnp(&process, words.front().c_str(), &actions, nullptr,
                                     pointers(words).data(), pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? process : 0;
}

} // namespace

SecretService::SecretService(std::map<std::string, std::string>& environment,
                             const std::string& folder)
    : m_bus(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    g_test_dbus_up(m_bus);
    environment["DBUS_SESSION_BUS_ADDRESS"] = g_test_dbus_get_bus_address(m_bus);
    environment["XDG_RUNTIME_DIR"] = folder + "/run";
    std::filesystem::create_directories(folder + "/run");
    std::filesystem::permissions(folder + "/run", std::filesystem::perms::owner_all);
    std::ofstream(folder + "/master") << "password of the keyring";
    m_process = spawn({"gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"},
                      environment, folder + "/master");
    m_connection = g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(m_bus),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!hasStarted()) {
        if (m_process == 0 || std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("gnome-keyring-daemon does not start");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

SecretService::~SecretService() {
    if (m_process > 0) {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
    g_clear_object(&m_connection);
    g_test_dbus_down(m_bus);
    g_object_unref(m_bus);
}

bool SecretService::hasStarted() const {
    GVariant* const reply = g_dbus_connection_call_sync(
        m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", serviceName), G_VARIANT_TYPE("(b)"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    gboolean hasOwner = FALSE;
    if (reply != nullptr) {
        g_variant_get(reply, "(b)", &hasOwner);
        g_variant_unref(reply);
    }
    return hasOwner != FALSE;
}

int SecretService::secretCount() const {
    GVariant* const reply = g_dbus_connection_call_sync(
        m_connection, serviceName, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service",
        "SearchItems", g_variant_new("(a{ss})", nullptr), G_VARIANT_TYPE("(aoao)"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (reply == nullptr) {
        return -1;
    }
    GVariant* const items = g_variant_get_child_value(reply, 0);
    const auto count = static_cast<int>(g_variant_n_children(items));
    g_variant_unref(items);
    g_variant_unref(reply);
    return count;
}

} // namespace quorvel::app
