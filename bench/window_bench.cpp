// What the window costs, seen from outside, on the display of the environment:
//   window_bench start PAIRS PEER PROGRAM ARGUMENT...
//     from the start of the process to the first picture on the screen, in turn with the peer
//   window_bench first PROGRAM ARGUMENT...
//     stops the process at its first picture, prints its number and the seconds since its start,
//     and ends it when the standard input has ended
//   window_bench idle SECONDS PROGRAM ARGUMENT...
//     frames drawn and processor time spent while nothing happens

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto longestStart = std::chrono::seconds(20);
constexpr auto settlingTime = std::chrono::seconds(3); // until a new window is done with its start

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "window_bench: %s\n", what.c_str());
    std::exit(1);
}

struct DisplayClose {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using DisplayHandle = std::unique_ptr<Display, DisplayClose>;

// A program that is ended with this object.
class Child {
public:
    explicit Child(char** argv, int endingSignal = SIGTERM)
        : m_endingSignal(endingSignal) {
        if (posix_spawnp(&m_process, argv[0], nullptr, nullptr, argv, environ) != 0)
            fail(std::string("cannot start ") + argv[0]);
    }
    ~Child() {
        kill(m_process, m_endingSignal);
        waitpid(m_process, nullptr, 0);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t process() const { return m_process; }

private:
    pid_t m_process = 0;
    int m_endingSignal;
};

std::vector<Window> windowsOnScreen(Display* display) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0)
        return {};
    std::vector<Window> windows(children, children + count);
    XFree(children);
    return windows;
}

std::optional<XWindowAttributes> visibleAttributes(Display* display, Window window) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0 ||
        attributes.map_state != IsViewable || attributes.width < 100)
        return std::nullopt;
    return attributes;
}

std::optional<Window> shownWindow(Display* display) {
    for (const Window window : windowsOnScreen(display)) {
        if (visibleAttributes(display, window))
            return window;
    }
    return std::nullopt;
}

// The screen is black where nothing has been drawn.
bool isDrawn(Display* display, Window window) {
    const auto attributes = visibleAttributes(display, window);
    if (!attributes)
        return false;
    XImage* image = XGetImage(display, DefaultRootWindow(display), attributes->x + 4,
                              attributes->y + attributes->height / 2, 1, 1, AllPlanes, ZPixmap);
    if (image == nullptr)
        return false;
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return (pixel & 0xFFFFFFU) != 0;
}

Clock::time_point waitForFirstPicture(Display* display, const char* program) {
    const auto start = Clock::now();
    while (Clock::now() - start < longestStart) {
        const auto window = shownWindow(display);
        if (window && isDrawn(display, *window))
            return Clock::now();
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    fail(std::string("no picture of ") + program);
}

Milliseconds timeToFirstPicture(Display* display, char** argv) {
    const auto start = Clock::now();
    const Child child(argv);
    return waitForFirstPicture(display, argv[0]) - start;
}

void waitUntilGone(Display* display) {
    while (shownWindow(display))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void measureStart(Display* display, int pairs, char* peer, char** program) {
    char* peerArguments[] = {peer, nullptr};
    std::vector<double> own;
    std::vector<double> others;
    std::vector<double> ratios;
    for (int i = -1; i < pairs; ++i) {
        const double other = timeToFirstPicture(display, peerArguments).count();
        waitUntilGone(display);
        const double mine = timeToFirstPicture(display, program).count();
        waitUntilGone(display);
        if (i < 0) // the first pair only warms the caches
            continue;
        own.push_back(mine);
        others.push_back(other);
        ratios.push_back(mine / other);
    }
    std::printf("start to the first picture, medians of %d pairs\n", pairs);
    std::printf("  quorvel show     %7.1f ms\n", median(own));
    std::printf("  an empty window  %7.1f ms\n", median(others));
    std::printf("  ratio            %7.2f\n", median(ratios));
}

// While it is stopped, what it has used is what its first picture took. It is killed, so that an
// orderly end adds nothing.
void stopAtFirstPicture(Display* display, char** argv) {
    const auto start = Clock::now();
    {
        const Child child(argv, SIGKILL);
        const Milliseconds elapsed = waitForFirstPicture(display, argv[0]) - start;
        kill(child.process(), SIGSTOP);
        std::printf("%d %.6f\n", static_cast<int>(child.process()), elapsed.count() / 1000);
        std::fflush(stdout);
        while (std::getchar() != EOF) {
        }
    }
    waitUntilGone(display);
}

// Of all its threads, those that have ended included.
Milliseconds processorTime(pid_t process) {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        fail("the processor time of the window is not known");
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

int takeDamageEvents(Display* display, int damageEvent) {
    int frames = 0;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        frames += event.type == damageEvent + XDamageNotify ? 1 : 0;
    }
    return frames;
}

void measureIdle(Display* display, int seconds, char** program) {
    int damageEvent = 0;
    int damageError = 0;
    if (XDamageQueryExtension(display, &damageEvent, &damageError) == 0)
        fail("the display does not tell of damage");
    const Child child(program);
    const auto start = Clock::now();
    std::optional<Window> window;
    while (!window && Clock::now() - start < longestStart) {
        window = shownWindow(display);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (!window)
        fail(std::string("no window of ") + program[0]);
    std::this_thread::sleep_for(settlingTime);
    XDamageCreate(display, *window, XDamageReportRawRectangles);
    XSync(display, False);
    takeDamageEvents(display, damageEvent);
    const Milliseconds before = processorTime(child.process());
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const Milliseconds spent = processorTime(child.process()) - before;
    XSync(display, False);
    std::printf("%d idle seconds\n", seconds);
    std::printf("  frames drawn     %7d\n", takeDamageEvents(display, damageEvent));
    std::printf("  processor time   %7.2f ms\n", spent.count());
}

int numberFrom(const char* text) {
    const int number = std::atoi(text);
    if (number < 1)
        fail(std::string(text) + " is no number above 0");
    return number;
}

// A window that goes away between two questions is no reason to stop.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (!(what == "start" && argc > 4) && !(what == "first" && argc > 2) &&
        !(what == "idle" && argc > 3))
        fail("usage: window_bench start PAIRS PEER PROGRAM ARGUMENT... | "
             "first PROGRAM ARGUMENT... | idle SECONDS PROGRAM ARGUMENT...");
    const DisplayHandle display(XOpenDisplay(nullptr));
    if (!display)
        fail("there is no display: run bench/window");
    XSetErrorHandler(ignoreError);
    if (what == "start")
        measureStart(display.get(), numberFrom(argv[2]), argv[3], argv + 4);
    else if (what == "first")
        stopAtFirstPicture(display.get(), argv + 2);
    else
        measureIdle(display.get(), numberFrom(argv[2]), argv + 3);
    return 0;
}
