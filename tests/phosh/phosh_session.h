// The phone's shell without a phone: its compositor with an injected touch screen, message buses, a
// stand-in of the login service and folders of its own. Everything ends with the object, also where
// the test crashes. Positions are in points of the screen, 360 x 720, at two pixels a point.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/phosh/bus_client.h"
#include "tests/phosh/process_figures.h"
#include "tests/window/child_process.h"
#include "tests/window/virtual_display.h"

namespace quorvel::phosh {

struct Position {
    double x = 0;
    double y = 0;
};

inline constexpr Position screenSize{360, 720};

struct PhoshOptions {
    // The folder of the shell's additional plugins, and those of the lock screen.
    std::string pluginFolder;
    std::vector<std::string> plugins;
    // Further variables of the shell's environment.
    std::map<std::string, std::string> environment;
};

class PhoshSession {
public:
    // Makes the folders. The shell starts with start(), so that a test can write its files before.
    explicit PhoshSession(PhoshOptions options);
    ~PhoshSession();
    PhoshSession(const PhoshSession&) = delete;
    PhoshSession& operator=(const PhoshSession&) = delete;

    // Below the session's own folder: "home", "home/.config" (settings), "home/.local/share"
    // (data), "home/.cache", "runtime", "shell.log", "compositor.log".
    std::filesystem::path path(const std::string& name) const { return m_folder / name; }

    // Further lines of the settings that the session's programs read; before start().
    void addSettings(const std::string& lines) { m_settings += lines; }
    void start(); // unlocked; throws std::runtime_error where the shell does not appear

    // These return whether the shell did it.
    bool lock();
    bool unlock();
    bool isLocked() const;
    // From the lock screen's clock to its page of widgets.
    bool turnToWidgets();

    // A finger that moves in that many steps of a frame each. With `hold` it stays on the screen.
    void drag(Position from, Position to, int steps = 15, bool hold = false) const;
    void lift() const;

    window::Picture screen() const;
    // Waits until the screen has not changed for that time.
    window::Picture steadyScreen(double seconds = 0.3) const;
    void screenshot(const std::filesystem::path& file) const; // a .png

    bool isShellAlive();
    pid_t shellProcess() const { return m_shell->process(); }
    ProcessFigures shellFigures() const { return figuresOf(shellProcess()); }
    std::string shellLog() const;
    // Ends the shell alone. Its exit status, or minus the signal; absent where it does not end.
    std::optional<int> endShell();

    const BusClient& sessionBus() const { return *m_sessionBus; }

private:
    void writeSettings() const;
    void startBuses();
    void startCompositor();
    void startShell();
    void registerPlugins() const;
    std::unique_ptr<window::ChildProcess> child(const std::vector<std::string>& words,
                                                const std::map<std::string, std::string>& more,
                                                const std::string& log) const;
    void run(const std::vector<std::string>& words) const;
    void touch(const std::string& command) const;

    PhoshOptions m_options;
    std::string m_settings;
    std::filesystem::path m_folder;
    std::map<std::string, std::string> m_environment;
    // In the order in which they start.
    std::vector<std::unique_ptr<window::ChildProcess>> m_services;
    std::unique_ptr<BusClient> m_systemBus;
    std::unique_ptr<BusClient> m_sessionBus;
    std::unique_ptr<window::ChildProcess> m_compositor;
    std::unique_ptr<window::ChildProcess> m_shell;
};

} // namespace quorvel::phosh
