#include "tests/window/window_fixture.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quorvel::window {

namespace fs = std::filesystem;

namespace {

constexpr double patience = 20; // seconds; sanitizers make programs slow

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void replaceFile(const fs::path& path, const std::string& text) {
    const fs::path newFile = path.string() + ".new";
    std::ofstream(newFile) << text;
    fs::rename(newFile, path);
}

// The parts of a text that each end with a NUL.
std::vector<std::string> partsOf(const std::string& text) {
    std::vector<std::string> parts;
    std::string part;
    for (const char c : text) {
        if (c == '\0') {
            parts.push_back(std::exchange(part, ""));
        } else {
            part += c;
        }
    }
    return parts;
}

// A new window is black before the program has painted it.
bool isPainted(const Picture& picture) {
    return std::ranges::any_of(picture.pixels, [](std::uint32_t pixel) { return pixel != 0; });
}

const char* environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

WindowTest::WindowTest() {
    std::string name = (fs::temp_directory_path() / "quorvel-window-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder");
    }
    m_folder = name;
    for (const char* folder :
         {"home", "calendars", "preferences", "data/applications", "config", "cache", "runtime"}) {
        fs::create_directories(m_folder / folder);
    }
    fs::permissions(m_folder / "runtime", fs::perms::owner_all);
    m_display = std::make_unique<VirtualDisplay>(path("display.log").string());
    m_environment = {{"HOME", path("home").string()},
                     {"XDG_DATA_HOME", path("data").string()},
                     {"XDG_CONFIG_HOME", path("config").string()},
                     {"XDG_CACHE_HOME", path("cache").string()},
                     {"XDG_RUNTIME_DIR", path("runtime").string()},
                     {"DBUS_SESSION_BUS_ADDRESS", environmentValue("DBUS_SESSION_BUS_ADDRESS")},
                     {"DISPLAY", m_display->name()},
                     {"GDK_BACKEND", "x11"},
                     {"NO_AT_BRIDGE", "1"},
                     {"PATH", "/usr/bin:/bin"},
                     {"LANG", "en_US.UTF-8"},
                     {"TZ", "UTC"},
                     {"ASAN_OPTIONS", environmentValue("ASAN_OPTIONS")},
                     {"UBSAN_OPTIONS", environmentValue("UBSAN_OPTIONS")},
                     {"TSAN_OPTIONS", environmentValue("TSAN_OPTIONS")},
                     {"LSAN_OPTIONS", "print_suppressions=0"}};
    installHandler("handler", "x-scheme-handler/x-apple-calevent");
    writeSettings("");
}

WindowTest::~WindowTest() {
    m_program.reset();
    for (const pid_t handler : handlers()) {
        kill(handler, SIGTERM);
    }
    EXPECT_TRUE(becomesTrue(5, [this] { return handlers().empty(); }));
    m_display.reset();
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

void WindowTest::writeCalendar(const std::string& events) const {
    replaceFile(path("calendars/work.ics"),
                "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + events + "END:VCALENDAR\r\n");
}

void WindowTest::writeThreeEvents() const {
    writeCalendar(event("first", "Breakfast", "20260310T110000Z", "20260310T120000Z") +
                  event("second", "Lunch", "20260310T120000Z", "20260310T130000Z") +
                  event("third", "Tea", "20260310T140000Z", "20260310T150000Z"));
}

void WindowTest::writeSettings(const std::string& entries) const {
    replaceFile(path("preferences/org.quorvel.quorvelprefs.plist"),
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" +
                    entries + "</dict></plist>");
}

void WindowTest::installHandler(const std::string& entryName, const std::string& type,
                                int milliseconds, const std::string& moreArguments) const {
    std::ofstream(path("data/applications/" + entryName + ".desktop"))
        << "[Desktop Entry]\nType=Application\nName=" << entryName << "\nExec=" << RECORDER << ' '
        << path("opened").string() << ' ' << milliseconds << ' '
        << (type.empty() ? entryName : "%u") << ' ' << moreArguments << "\nMimeType=" << type
        << ";\n";
    if (!type.empty()) {
        std::ofstream(path("config/mimeapps.list"), std::ios::app)
            << "[Default Applications]\n"
            << type << '=' << entryName << ".desktop\n";
    }
}

std::vector<std::string> WindowTest::commonArguments(const std::string& now) const {
    return {"--calendars",   path("calendars").string(),
            "--preferences", path("preferences").string(),
            "--locale",      "en_US",
            "--timezone",    "UTC",
            "--now",         now,
            "--log",         path("log").string()};
}

void WindowTest::show(const std::vector<std::string>& more, const std::string& now) {
    std::vector<std::string> arguments = commonArguments(now);
    arguments.insert(arguments.begin(), "show");
    arguments.insert(arguments.end(), more.begin(), more.end());
    showWith(arguments);
}

Picture WindowTest::pictureAt(const std::string& now) {
    show({}, now);
    const Picture shown = picture();
    endProgram();
    return shown;
}

void WindowTest::showBeforeEndOf(const std::string& minute, const Picture& expected) {
    for (const int seconds : {57, 50, 30, 0}) {
        show({},
             "2026-03-10T" + minute + (seconds < 10 ? ":0" : ":") + std::to_string(seconds) + "Z");
        if (picture() == expected) {
            return;
        }
    }
    FAIL() << "the window never showed the expected picture";
}

std::string WindowTest::printed(const std::string& command,
                                const std::vector<std::string>& more) const {
    std::vector<std::string> words = commonArguments(tenOClock);
    words.insert(words.begin(), {QUORVEL_PROGRAM, command});
    words.insert(words.end(), more.begin(), more.end());
    fs::remove(path("printed")); // the output is appended
    ChildProcess program(words, m_environment, path("errors").string(), -1,
                         path("printed").string());
    EXPECT_EQ(program.exitStatus(patience), 0) << errors();
    return contents(path("printed"));
}

// A window manager takes a moment to remove the frame of a program that has ended.
void WindowTest::endProgram() {
    m_program.reset();
    EXPECT_TRUE(becomesTrue(patience, [this] { return m_display->windows().empty(); }));
}

void WindowTest::showWith(const std::vector<std::string>& arguments) {
    endProgram();
    std::vector<std::string> words{QUORVEL_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    m_program = std::make_unique<ChildProcess>(words, m_environment, path("errors").string());
    ASSERT_TRUE(becomesTrue(patience, [this] {
        m_window = m_display->window();
        return m_window != 0;
    })) << errors();
    input({"windowfocus", window()});
    ASSERT_TRUE(isPainted(steadyPicture())) << errors();
}

Picture WindowTest::wholePicture() const {
    return m_display->picture(m_window).value_or(Picture{});
}

int WindowTest::scale() const {
    const auto scale = m_environment.find("GDK_SCALE");
    return scale != m_environment.end() ? std::stoi(scale->second) : 1;
}

// On a display without a compositor, the theme draws a frame around the window.
int WindowTest::frameWidth() const {
    constexpr int points = 5;
    return points * scale();
}

int WindowTest::headerHeight() const {
    constexpr int points = 36;
    return points * scale();
}

Picture WindowTest::picture() const {
    const Picture whole = wholePicture();
    const int frame = frameWidth();
    return whole.part(frame, frame + headerHeight(), whole.width - 2 * frame,
                      whole.height - 2 * frame - headerHeight());
}

Picture WindowTest::steadyPicture() const {
    Picture last = picture();
    double since = secondsNow();
    becomesTrue(patience, [&] {
        Picture next = picture();
        if (next != last || !isPainted(next)) {
            last = std::move(next);
            since = secondsNow();
        }
        return secondsNow() - since > 0.3;
    });
    return last;
}

bool WindowTest::pictureBecomes(const Picture& wanted, double seconds) const {
    return becomesTrue(seconds, [&] { return picture() == wanted; });
}

bool WindowTest::pictureChangesFrom(const Picture& old, double seconds) const {
    return becomesTrue(seconds, [&] { return picture() != old; });
}

unsigned long WindowTest::secondWindow() const {
    unsigned long second = 0;
    becomesTrue(10, [&] {
        for (const unsigned long candidate : m_display->windows()) {
            second = candidate != m_window ? candidate : second;
        }
        return second != 0;
    });
    return second;
}

bool WindowTest::tryInput(const std::vector<std::string>& words) const {
    std::vector<std::string> command{XDOTOOL};
    command.insert(command.end(), words.begin(), words.end());
    ChildProcess tool(command, m_environment, path("xdotool.log").string());
    return tool.exitStatus(patience) == 0;
}

void WindowTest::input(const std::vector<std::string>& words) const {
    EXPECT_TRUE(tryInput(words)) << contents(path("xdotool.log"));
}

void WindowTest::moveTo(int x, int y) const {
    const int frame = frameWidth();
    input({"mousemove", "--window", window(), std::to_string(x + frame),
           std::to_string(y + frame + headerHeight())});
}

void WindowTest::moveToHeader(int x) const {
    const int frame = frameWidth();
    input({"mousemove", "--window", window(), std::to_string(x + frame),
           std::to_string(frame + headerHeight() / 2)});
}

void WindowTest::press(int x, int y) const {
    moveTo(x, y);
    input({"mousedown", "1"});
}

void WindowTest::release() const {
    input({"mouseup", "1"});
}

void WindowTest::drag(int fromX, int fromY, int toX, int toY) const {
    press(fromX, fromY);
    moveTo((fromX + toX) / 2, (fromY + toY) / 2);
    moveTo(toX, toY);
    rest(0.2);
    release();
}

void WindowTest::key(const std::string& name) const {
    input({"key", name});
}

// xdotool's own click command is slow.
void WindowTest::click(int button) const {
    input({"mousedown", std::to_string(button), "mouseup", std::to_string(button)});
}

std::vector<std::string> WindowTest::opened() const {
    std::string written = contents(path("opened"));
    std::erase(written, '\n');
    return partsOf(written);
}

// Only these handlers have the test's own file as an argument.
std::vector<pid_t> WindowTest::handlers() const {
    std::vector<pid_t> running;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::vector<std::string> words = partsOf(contents(entry.path() / "cmdline"));
        if (words.size() > 1 && words[0] == RECORDER && words[1] == path("opened")) {
            running.push_back(std::stoi(entry.path().filename().string()));
        }
    }
    return running;
}

bool WindowTest::opensLinks(std::size_t count) const {
    return becomesTrue(10, [&] { return opened().size() >= count; });
}

std::string WindowTest::errors() const {
    return contents(path("errors"));
}

int distanceForOffset(double offset) {
    constexpr double width = 320;
    constexpr double slop = 10;
    return static_cast<int>(std::lround((1 / (1 - offset / width) - 1) * width / 0.55 + slop));
}

std::string event(const std::string& uid, const std::string& title, const std::string& start,
                  const std::string& end) {
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART:" + start + "\r\nDTEND:" + end +
           "\r\nSUMMARY:" + title + "\r\nEND:VEVENT\r\n";
}

} // namespace quorvel::window
