#include "tests/phosh/phosh_session.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/compositor/injected_input.h"
#include "tests/window/ppm_picture.h"

namespace quorvel::phosh {

namespace fs = std::filesystem;
using window::becomesTrue;
using window::ChildProcess;
using window::Picture;

namespace {

constexpr double patience = 30; // seconds; sanitizers make the shell slow
constexpr double frame = 0.016;
constexpr const char* noLeaks = "detect_leaks=0"; // the program's own are of no interest

// It starts no services by itself: what the test does not start does not exist.
std::string busConfiguration(const std::string& address) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>)" +
           address + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// As the compositor's screen before a shell has painted.
bool isBlank(const Picture& picture) {
    return std::ranges::all_of(picture.pixels,
                               [&](auto pixel) { return pixel == picture.at(0, 0); });
}

std::string textList(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) {
        list += (list.empty() ? "'" : ", '") + text + "'";
    }
    return "[" + list + "]";
}

const Method lockMethod{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver",
                        "Lock"};
const Method isLockedMethod{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver",
                            "org.gnome.ScreenSaver", "GetActive"};
const Method unlockMethod{"org.freedesktop.login1", "/org/freedesktop/login1/session/c1",
                          "org.freedesktop.login1.Session", "Unlock"};
const Method addSessionMethod{"org.freedesktop.login1", "/org/freedesktop/login1",
                              "org.freedesktop.DBus.Mock", "AddSession"};

} // namespace

PhoshSession::PhoshSession(PhoshOptions options)
    : m_options(std::move(options)) {
    std::string name = (fs::temp_directory_path() / "quorvel-phosh-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder");
    }
    m_folder = name;
    for (const char* folder : {"home/.config/glib-2.0/settings", "home/.local/share/applications",
                               "home/.cache", "runtime", "no-plugins"}) {
        fs::create_directories(m_folder / folder);
    }
    fs::permissions(m_folder / "runtime", fs::perms::owner_all);
    if (m_options.pluginFolder.empty()) {
        m_options.pluginFolder = path("no-plugins");
    }
    m_environment = {
        {"HOME", path("home")},
        {"XDG_CONFIG_HOME", path("home/.config")},
        {"XDG_DATA_HOME", path("home/.local/share")},
        {"XDG_CACHE_HOME", path("home/.cache")},
        {"XDG_RUNTIME_DIR", path("runtime")},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path("runtime/session-bus").string()},
        {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path("runtime/system-bus").string()},
        {"XDG_CURRENT_DESKTOP", "Phosh:GNOME"},
        {"XDG_SESSION_TYPE", "wayland"},
        {"XDG_SESSION_DESKTOP", "phosh"},
        {"GSETTINGS_BACKEND", "keyfile"},
        {"NO_AT_BRIDGE", "1"},
        {"PATH", "/usr/bin:/bin"},
        {"LANG", "C.UTF-8"},
        {"TZ", "UTC"},
    };
}

PhoshSession::~PhoshSession() {
    m_shell.reset();
    m_compositor.reset();
    m_sessionBus.reset();
    m_systemBus.reset();
    while (!m_services.empty()) {
        m_services.pop_back();
    }
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void PhoshSession::start() {
    writeSettings();
    registerPlugins();
    startBuses();
    startCompositor();
    startShell();
}

void PhoshSession::writeSettings() const {
    // The arrow on the lock screen would move for half a minute.
    std::ofstream(path("home/.config/glib-2.0/settings/keyfile"))
        << "[org/gnome/desktop/interface]\nenable-animations=false\n"
        << "[sm/puri/phosh/plugins]\nlock-screen=" << textList(m_options.plugins) << '\n'
        << m_settings;
}

// A module that is in no cache is loaded before the shell has registered its extension points, and
// then not used.
void PhoshSession::registerPlugins() const {
    const auto program =
        child({GIO_QUERYMODULES, m_options.pluginFolder},
              {{"LD_PRELOAD", SANITIZER_RUNTIME}, {"ASAN_OPTIONS", noLeaks}}, "tools.log");
    if (program->exitStatus(patience) != 0) {
        throw std::runtime_error("no plugins: " + contents(path("tools.log")));
    }
}

void PhoshSession::startBuses() {
    for (const char* bus : {"SYSTEM", "SESSION"}) {
        const std::string settings = path("runtime/" + std::string(bus) + ".conf");
        std::ofstream(settings) << busConfiguration(
            m_environment["DBUS_" + std::string(bus) + "_BUS_ADDRESS"]);
        m_services.push_back(
            child({DBUS_DAEMON, "--nofork", "--config-file=" + settings}, {}, "bus.log"));
    }
    m_systemBus = std::make_unique<BusClient>(m_environment["DBUS_SYSTEM_BUS_ADDRESS"], patience);
    m_sessionBus = std::make_unique<BusClient>(m_environment["DBUS_SESSION_BUS_ADDRESS"], patience);
    m_services.push_back(
        child({PYTHON, "-m", "dbusmock", "--system", "--template", "logind"}, {}, "logind.log"));
    if (!m_systemBus->waitForService("org.freedesktop.login1", patience) ||
        !becomesTrue(patience, [this] {
            return m_systemBus->call(addSessionMethod, g_variant_new("(ssusb)", "c1", "seat0", 0U,
                                                                     "root", TRUE)) != nullptr;
        })) {
        throw std::runtime_error("no login service: " + contents(path("logind.log")));
    }
}

void PhoshSession::startCompositor() {
    m_compositor = child({PHOC, "-S", "-C", PHOC_SETTINGS},
                         {{"LD_PRELOAD", INPUT_PRELOAD},
                          {"QUORVEL_INPUT_SOCKET", path("runtime/input")},
                          {"WLR_BACKENDS", "headless"},
                          {"WLR_RENDERER", "pixman"},
                          {"WLR_LIBINPUT_NO_DEVICES", "1"}},
                         "compositor.log");
    if (!becomesTrue(patience,
                     [this] {
                         return m_compositor->exitStatus(0) ||
                                (fs::exists(path("runtime/input")) &&
                                 fs::exists(path("runtime/wayland-0")));
                     }) ||
        m_compositor->exitStatus(0)) {
        throw std::runtime_error("no compositor: " + contents(path("compositor.log")));
    }
    m_environment["WAYLAND_DISPLAY"] = "wayland-0";
    compositor::sendInput(path("runtime/input"), "point 0.999 0.999"); // out of the pictures' way
}

void PhoshSession::startShell() {
    std::map<std::string, std::string> more = m_options.environment;
    const std::string sanitizer = SANITIZER_RUNTIME;
    more["LD_PRELOAD"] = (sanitizer.empty() ? "" : sanitizer + ":") + SESSION_PRELOAD;
    more["GIO_EXTRA_MODULES"] = m_options.pluginFolder;
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        more.emplace(name, environmentValue(name));
    }
    more["G_MESSAGES_DEBUG"] = "phosh-shell";
    m_shell = child({PHOSH, "-U"}, more, "shell.log");
    // Before that the compositor covers the screen, and a shell that is locked meanwhile stays
    // covered.
    const auto isUp = [this] {
        return shellLog().find("Notify compositor state: 1") != std::string::npos;
    };
    if (!m_sessionBus->waitForService("org.gnome.ScreenSaver", patience) ||
        !becomesTrue(patience, isUp)) {
        throw std::runtime_error("no shell: " + shellLog());
    }
    window::rest(0.5); // the compositor uncovers the screen
}

bool PhoshSession::lock() {
    m_sessionBus->call(lockMethod);
    return becomesTrue(patience, [this] { return isLocked(); }) &&
           becomesTrue(patience, [this] { return !isBlank(screen()); });
}

bool PhoshSession::unlock() {
    m_systemBus->call(unlockMethod);
    return becomesTrue(patience, [this] { return !isLocked(); });
}

bool PhoshSession::isLocked() const {
    const freedesktop::VariantHandle reply = m_sessionBus->call(isLockedMethod);
    gboolean isActive = FALSE;
    if (reply) {
        g_variant_get(reply.get(), "(b)", &isActive);
    }
    return isActive != FALSE;
}

bool PhoshSession::turnToWidgets() {
    const Picture before = steadyScreen();
    drag({0.1 * screenSize.x, 0.3 * screenSize.y}, {0.9 * screenSize.x, 0.3 * screenSize.y});
    return steadyScreen() != before;
}

void PhoshSession::drag(Position from, Position to, int steps, bool hold) const {
    const auto at = [&](const std::string& command, double part) {
        const double x = (from.x + (to.x - from.x) * part) / screenSize.x;
        const double y = (from.y + (to.y - from.y) * part) / screenSize.y;
        touch(command + " 0 " + std::to_string(x) + " " + std::to_string(y));
        window::rest(frame);
    };
    at("down", 0);
    for (int step = 1; step <= steps; ++step) {
        at("move", static_cast<double>(step) / steps);
    }
    if (!hold) {
        lift();
    }
}

void PhoshSession::lift() const {
    touch("up 0");
}

void PhoshSession::touch(const std::string& command) const {
    compositor::sendInput(path("runtime/input"), command);
}

Picture PhoshSession::screen() const {
    const std::string file = path("screen.ppm");
    window::rest(0.1); // capture after capture keeps the compositor from painting
    run({GRIM, "-t", "ppm", file});
    return window::ppmPicture(contents(file));
}

Picture PhoshSession::steadyScreen(double seconds) const {
    Picture last = screen();
    double since = window::secondsNow();
    becomesTrue(patience, [&] {
        Picture next = screen();
        if (next != last) {
            last = std::move(next);
            since = window::secondsNow();
        }
        return window::secondsNow() - since > seconds;
    });
    return last;
}

void PhoshSession::screenshot(const fs::path& file) const {
    run({GRIM, file});
}

bool PhoshSession::isShellAlive() {
    return !m_shell->exitStatus(0);
}

std::string PhoshSession::shellLog() const {
    return contents(path("shell.log"));
}

std::optional<int> PhoshSession::endShell() {
    kill(m_shell->process(), SIGTERM);
    return m_shell->exitStatus(patience);
}

// Ends with this process, whatever becomes of the object.
std::unique_ptr<ChildProcess> PhoshSession::child(const std::vector<std::string>& words,
                                                  const std::map<std::string, std::string>& more,
                                                  const std::string& log) const {
    std::vector<std::string> tied{SETPRIV, "--pdeathsig", "TERM"};
    tied.insert(tied.end(), words.begin(), words.end());
    std::map<std::string, std::string> environment = m_environment;
    for (const auto& [name, value] : more) {
        environment[name] = value;
    }
    return std::make_unique<ChildProcess>(tied, environment, path(log), -1, path(log));
}

void PhoshSession::run(const std::vector<std::string>& words) const {
    const auto program = child(words, {}, "tools.log");
    if (program->exitStatus(patience) != 0) {
        throw std::runtime_error(words[0] + " failed: " + contents(path("tools.log")));
    }
}

} // namespace quorvel::phosh
