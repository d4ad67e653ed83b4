#include "tests/layer/layer_session.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include <linux/input-event-codes.h>
#include <unistd.h>

#include "tests/compositor/injected_input.h"
#include "tests/window/ppm_picture.h"

namespace quorvel::layer {

namespace fs = std::filesystem;
using window::becomesTrue;
using window::ChildProcess;
using window::Picture;

namespace {

constexpr double patience = 20; // seconds; sanitizers make programs slow
constexpr double moment = 0.3;  // seconds in which a program reacts
constexpr unsigned nobody = 65534;

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// The compositor refuses to run as root.
std::vector<std::string> asOrdinaryUser(std::vector<std::string> words) {
    std::vector<std::string> whole{SETPRIV, "--pdeathsig", "TERM"};
    if (geteuid() == 0) {
        const std::string number = std::to_string(nobody);
        whole.insert(whole.end(), {"--reuid", number, "--regid", number, "--clear-groups"});
    }
    whole.insert(whole.end(), words.begin(), words.end());
    return whole;
}

Bounds boundsIn(const Picture& picture, std::uint32_t background) {
    Bounds bounds{picture.width, picture.height, 0, 0};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.at(x, y) != background) {
                bounds = {std::min(bounds.left, x), std::min(bounds.top, y),
                          std::max(bounds.right, x + 1), std::max(bounds.bottom, y + 1)};
            }
        }
    }
    return bounds.right == 0 ? Bounds() : bounds;
}

} // namespace

void PrintTo(const Bounds& bounds, std::ostream* stream) {
    *stream << bounds.left << ',' << bounds.top << " to " << bounds.right << ',' << bounds.bottom;
}

LayerSession::LayerSession() {
    std::string name = (fs::temp_directory_path() / "quorvel-layer-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder");
    }
    m_folder = name;
    for (const char* folder : {"runtime", "home"}) {
        fs::create_directories(m_folder / folder);
    }
    fs::permissions(m_folder / "runtime", fs::perms::owner_all);
    m_environment = {{"HOME", path("home")},
                     {"XDG_RUNTIME_DIR", path("runtime")},
                     {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
                     {"GDK_BACKEND", "wayland"},
                     {"NO_AT_BRIDGE", "1"},
                     {"PATH", "/usr/bin:/bin"},
                     {"LANG", "C.UTF-8"},
                     {"TZ", "UTC"}};
    for (const char* options : {"ASAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* value = std::getenv(options)) {
            m_environment[options] = value;
        }
    }
    m_environment["LSAN_OPTIONS"] = "print_suppressions=0";
    startCompositor();
}

LayerSession::~LayerSession() {
    m_compositor.reset();
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void LayerSession::startCompositor() {
    std::ofstream(path("sway.conf")) << "output HEADLESS-1 mode 1000x800 position 0 0\n"
                                        "output HEADLESS-2 mode 800x600 position 1000 0\n"
                                        "output HEADLESS-3 mode 100x100 position 1800 0\n"
                                        "xwayland disable\n";
    if (geteuid() == 0) {
        fs::permissions(m_folder, fs::perms::others_read | fs::perms::others_exec,
                        fs::perm_options::add);
        if (chown(path("runtime").c_str(), nobody, nobody) != 0) {
            throw std::runtime_error("no runtime folder");
        }
    }
    std::map<std::string, std::string> environment = m_environment;
    environment["WLR_BACKENDS"] = "headless";
    environment["WLR_HEADLESS_OUTPUTS"] = "3";
    environment["WLR_LIBINPUT_NO_DEVICES"] = "1";
    environment["WLR_RENDERER"] = "pixman";
    environment["LD_PRELOAD"] = INPUT_PRELOAD;
    environment["QUORVEL_INPUT_SOCKET"] = path("runtime/input");
    m_compositor = std::make_unique<ChildProcess>(asOrdinaryUser({SWAY, "-c", path("sway.conf")}),
                                                  environment, path("compositor.log"));
    m_environment["WAYLAND_DISPLAY"] = "wayland-1";
    const auto isUp = [this] {
        return fs::exists(path("runtime/wayland-1")) && fs::exists(path("runtime/input"));
    };
    if (!becomesTrue(patience, [&] { return m_compositor->exitStatus(0) || isUp(); }) ||
        m_compositor->exitStatus(0) || !becomesTrue(patience, [this] {
            return picture("HEADLESS-1").width == 1000 && picture("HEADLESS-2").width == 800 &&
                   picture("HEADLESS-3").width == 100;
        })) {
        throw std::runtime_error("no compositor: " + contents(path("compositor.log")));
    }
    pointTo(1850, 50);
    m_background = picture("HEADLESS-1").at(0, 0);
}

std::unique_ptr<ChildProcess> LayerSession::show(const std::vector<std::string>& options) const {
    std::vector<std::string> words{SETPRIV,      "--pdeathsig",
                                   "TERM",       QUORVEL_PROGRAM,
                                   "show",       "--sample",
                                   "--now",      "2026-03-10T09:00:00Z",
                                   "--log",      path("log").string(),
                                   "--timezone", "UTC",
                                   "--locale",   "en_US"};
    words.insert(words.end(), options.begin(), options.end());
    return std::make_unique<ChildProcess>(words, m_environment, path("errors"));
}

Picture LayerSession::picture(const std::string& output) const {
    window::rest(0.05);
    run({GRIM, "-t", "ppm", "-o", output, path("screen.ppm")});
    return window::ppmPicture(contents(path("screen.ppm")));
}

Bounds LayerSession::steadyBounds(const std::string& output) const {
    Picture last = picture(output);
    double since = window::secondsNow();
    becomesTrue(patience, [&] {
        Picture next = picture(output);
        if (next != last || boundsIn(next, m_background) == Bounds()) {
            last = std::move(next);
            since = window::secondsNow();
        }
        return window::secondsNow() - since > 0.5;
    });
    return boundsIn(last, m_background);
}

void LayerSession::click(int x, int y) const {
    pointTo(x, y);
    compositor::sendInput(path("runtime/input"), "press");
    compositor::sendInput(path("runtime/input"), "release");
    window::rest(moment);
}

// A position is a part of all outputs together.
void LayerSession::pointTo(int x, int y) const {
    constexpr double width = 1900;
    constexpr double height = 800;
    compositor::sendInput(path("runtime/input"),
                          "point " + std::to_string(x / width) + " " + std::to_string(y / height));
    window::rest(moment);
}

void LayerSession::pressEscape() const {
    compositor::sendInput(path("runtime/input"), "key " + std::to_string(KEY_ESC));
}

void LayerSession::setOutputEnabled(const std::string& output, bool isEnabled) const {
    for (const fs::directory_entry& entry : fs::directory_iterator(path("runtime"))) {
        if (entry.path().filename().string().starts_with("sway-ipc.")) {
            run({SWAYMSG, "-s", entry.path(), "output", output, isEnabled ? "enable" : "disable"});
        }
    }
}

std::string LayerSession::errors() const {
    return contents(path("errors"));
}

void LayerSession::run(const std::vector<std::string>& words) const {
    ChildProcess program(words, m_environment, path("tools.log"));
    if (program.exitStatus(patience) != 0) {
        throw std::runtime_error(words[0] + " failed: " + contents(path("tools.log")));
    }
}

} // namespace quorvel::layer
