// What the widget costs inside a living process, on the platform in memory and on Linux.
//   Presentation: settings, gathering, heights, captions and the visible cells, at N rows
//   Caption, RowLayout: one of each
//   Frame: ten rows drawn at two pixels a point
//   PhoneFrame: 25 rows on a phone's screen of 1080 x 2340 pixels, at three pixels a point
//   Scroll: from the top to the bottom of 1,000 rows, a row a step
//   DragFrame: a finger pulls one of ten rows: a touch moved, layout, drawing, at two pixels a
//     point
//   FlingFrames: each frame of a fling over 1,000 rows at 60 a second: motion, layout, drawing
//   PhoneFlingFrames: the same on that phone

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "agenda/quorvel_view.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "hosting/quorvel_view_controller_new.h"
#include "platform/graphics_context.h"
#include "platform/memory/memory_platform.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"

namespace {

using namespace quorvel;
using namespace quorvel::platform;

// 2026-03-10 10:00:00 UTC.
constexpr NSDate now{794829600};
struct Device {
    CGSize size;   // of the screen, in points
    CGFloat scale; // pixels per point
};
constexpr Device firstPhone{{320, 568}, 2}; // that the widget was first made for
constexpr Device tallPhone{{360, 780}, 3};

void fail(const char* what) {
    std::fprintf(stderr, "widget_bench: %s\n", what);
    std::exit(1);
}

// All events lie within the two days that the widget shows by default.
int minuteOfEvent(int number) {
    return number % (24 * 60);
}

class MemorySurroundings {
public:
    MemorySurroundings(int events, const Device&) {
        m_platform.clock.setNow(now);
        m_platform.preferences.files["/var/mobile/Library/Preferences/"
                                     "org.quorvel.quorvelprefs.plist"] = PropertyListDictionary();
        m_platform.preferences
            .files["/private/var/mobile/Library/Preferences/com.apple.mobilecal.plist"] =
            PropertyListDictionary();
        const auto calendar =
            m_platform.calendarStores.addCalendar("work", "Work", UIColor::orangeColor());
        for (int i = 0; i < events; ++i) {
            EKEvent event;
            event.title = "Meeting number " + std::to_string(i);
            event.location = "Room " + std::to_string(i % 40);
            event.startDate = now.dateByAddingTimeInterval(60.0 * minuteOfEvent(i));
            event.endDate = event.startDate.dateByAddingTimeInterval(1800);
            event.calendar = calendar;
            event.persistentEvent.eventIdentifier = "work:event-" + std::to_string(i);
            m_platform.calendarStores.addEvent(event);
        }
    }
    const Platform& platform() const { return m_platform.platform(); }
    void forgetRecords() {
        m_platform.calendarStores.predicates.clear();
        m_platform.preferences.reads.clear();
    }

private:
    memory::MemoryPlatform m_platform;
};

std::string icsText(int events) {
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:Work\r\n";
    for (int i = 0; i < events; ++i) {
        const int minute = 10 * 60 + minuteOfEvent(i);
        char start[32];
        std::snprintf(start, sizeof start, "202603%02dT%02d%02d00Z", 10 + minute / 1440,
                      minute / 60 % 24, minute % 60);
        text += "BEGIN:VEVENT\r\nUID:event-" + std::to_string(i) + "\r\nDTSTART:" + start +
                "\r\nDURATION:PT30M\r\nSUMMARY:Meeting number " + std::to_string(i) +
                "\r\nLOCATION:Room " + std::to_string(i % 40) + "\r\nEND:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

class LinuxSurroundings {
public:
    LinuxSurroundings(int events, const Device& device)
        : m_platform(options(events, device)) {}
    const Platform& platform() const { return m_platform.platform(); }
    void forgetRecords() {}

private:
    static freedesktop::FreedesktopOptions options(int events, const Device& device) {
        freedesktop::FreedesktopOptions options;
        options.timeZone = freedesktop::utcTimeZone();
        options.locale = "en_US";
        options.fontFamily = "Inter";
        options.makeRendering = freedesktop::makeLinkedRendering;
        options.dataFolder = DATA_FOLDER;
        options.preferencesFolder = PREFERENCES_FOLDER;
        options.calendars = {freedesktop::CalendarSource::inMemory("work", icsText(events))};
        options.calendarProblemHandler = [](const freedesktop::CalendarProblem& problem) {
            fail(problem.what.english().c_str());
        };
        options.now = now;
        options.scale = device.scale;
        return options;
    }

    freedesktop::FreedesktopPlatform m_platform;
};

// The controller in a window as high as a screen, as a shell has it.
template <typename Surroundings>
class Widget {
public:
    explicit Widget(int events, const Device& device = firstPhone)
        : surroundings(events, device)
        , m_window(
              std::make_shared<UIWindow>(CGRect{{}, device.size}, surroundings.platform().screen))
        , m_controller(std::make_shared<QuorvelViewControllerNew>(surroundings.platform())) {
        m_window->addSubview(m_controller->view());
        view().setFrame(m_window->bounds());
        present();
        if (static_cast<int>(view().items()->size()) != events)
            fail("the widget does not show all events");
    }

    void present() {
        m_controller->hostWillPresent();
        m_window->layoutIfNeeded();
        m_controller->hostDidPresent();
    }
    QuorvelView& view() const { return static_cast<QuorvelView&>(*m_controller->view()); }
    UIWindow& window() const { return *m_window; }

    Surroundings surroundings;

private:
    std::shared_ptr<UIWindow> m_window;
    std::shared_ptr<QuorvelViewControllerNew> m_controller;
};

template <typename Surroundings>
void presentation(benchmark::State& state) {
    Widget<Surroundings> widget(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        widget.present();
        widget.surroundings.forgetRecords();
    }
}

template <typename Surroundings>
void caption(benchmark::State& state) {
    Widget<Surroundings> widget(10);
    const NSDate date = now.dateByAddingTimeInterval(86400);
    for (auto _ : state)
        benchmark::DoNotOptimize(widget.view().createPrettyDateFrom(date, false));
}

template <typename Surroundings>
void rowLayout(benchmark::State& state) {
    Widget<Surroundings> widget(10);
    const auto cell = widget.view().itemsTableView()->visibleCells().front();
    for (auto _ : state) {
        cell->setNeedsLayout();
        cell->layoutIfNeeded();
    }
}

template <typename Surroundings>
void frame(benchmark::State& state) {
    Widget<Surroundings> widget(10);
    const CGSize size{firstPhone.size.width, widget.view().totalItemsHeight()};
    widget.view().setFrame({{}, size});
    widget.window().layoutIfNeeded();
    const auto picture =
        widget.surroundings.platform().graphicsContexts.beginImageContext(size, false, 2);
    for (auto _ : state)
        widget.view().render(picture->context());
}

template <typename Surroundings>
void scroll(benchmark::State& state) {
    Widget<Surroundings> widget(1000);
    UITableView& table = *widget.view().itemsTableView();
    const CGFloat step = table.rowHeights().front();
    const CGFloat bottom = table.contentSize().height - firstPhone.size.height;
    for (auto _ : state)
        for (CGFloat y = 0; y < bottom; y += step) {
            table.setContentOffset({0, y});
            widget.window().layoutIfNeeded();
        }
}

// A picture of the window's size, at the screen's scale.
std::unique_ptr<ImageContext> pictureOf(const Widget<LinuxSurroundings>& widget) {
    return widget.surroundings.platform().graphicsContexts.beginImageContext(
        widget.window().bounds().size, false, 0);
}

void phoneFrame(benchmark::State& state) {
    constexpr int rows = 25;
    Widget<LinuxSurroundings> widget(rows, tallPhone);
    UIWindow& window = widget.window();
    const auto picture = pictureOf(widget);
    if (widget.view().itemsTableView()->visibleCells().size() < rows / 2)
        fail("the rows do not fill the screen");
    for (auto _ : state)
        window.render(picture->context());
    state.counters["visible_rows"] =
        static_cast<double>(widget.view().itemsTableView()->visibleCells().size());
}

void dragFrame(benchmark::State& state) {
    Widget<LinuxSurroundings> widget(10);
    UIWindow& window = widget.window();
    const auto picture = pictureOf(widget);
    double time = 0;
    const auto report = [&](UITouchPhase phase, CGFloat x) {
        window.sendFinger({1, phase, {x, 20}, time});
    };
    report(UITouchPhase::began, 60);
    report(UITouchPhase::moved, 120);
    if (!window.draggedScrollView())
        fail("the row is not dragged");
    for (auto _ : state) {
        time += 1.0 / 120;
        report(UITouchPhase::moved, 100 + 10 * (static_cast<int>(time * 120) % 12));
        window.layoutIfNeeded();
        window.render(picture->context());
    }
}

// One fling from the top, from `time` on; the cost of each frame in milliseconds.
std::vector<double> flingFrameCosts(Widget<LinuxSurroundings>& widget, ImageContext& picture,
                                    double& time) {
    constexpr double frame = 1.0 / 60;
    UIWindow& window = widget.window();
    widget.view().itemsTableView()->setContentOffset({0, 0});
    const CGFloat x = window.bounds().size.width / 2;
    CGFloat y = window.bounds().size.height - 10;
    window.sendFinger({1, UITouchPhase::began, {x, y}, time});
    for (int i = 0; i < 5; ++i) {
        y -= 100;
        time += frame;
        window.sendFinger({1, UITouchPhase::moved, {x, y}, time});
    }
    window.sendFinger({1, UITouchPhase::ended, {x, y}, time});
    std::vector<double> costs;
    for (bool moving = true; moving;) {
        time += frame;
        const auto start = std::chrono::steady_clock::now();
        moving = window.advance(time);
        window.layoutIfNeeded();
        window.render(picture.context());
        const std::chrono::duration<double, std::milli> cost =
            std::chrono::steady_clock::now() - start;
        costs.push_back(cost.count());
    }
    return costs;
}

void measureFling(benchmark::State& state, const Device& device) {
    Widget<LinuxSurroundings> widget(1000, device);
    widget.view().itemsTableView()->setScrollEnabled(true); // as with a limited height
    const auto picture = pictureOf(widget);
    std::vector<double> costs;
    double time = 0;
    for (auto _ : state) {
        const std::vector<double> fling = flingFrameCosts(widget, *picture, time);
        costs.insert(costs.end(), fling.begin(), fling.end());
    }
    const CGFloat way = widget.view().itemsTableView()->contentOffset().y;
    if (way < device.size.height)
        fail("the fling does not move the list");
    std::sort(costs.begin(), costs.end());
    state.counters["frames"] = static_cast<double>(costs.size());
    state.counters["way_points"] = way;
    state.counters["median_ms"] = costs[costs.size() / 2];
    state.counters["p99_ms"] = costs[costs.size() * 99 / 100];
}

void flingFrames(benchmark::State& state) {
    measureFling(state, firstPhone);
}

void phoneFlingFrames(benchmark::State& state) {
    measureFling(state, tallPhone);
}

BENCHMARK(presentation<MemorySurroundings>)->RangeMultiplier(10)->Range(10, 10000);
BENCHMARK(presentation<LinuxSurroundings>)->RangeMultiplier(10)->Range(10, 10000);
BENCHMARK(caption<MemorySurroundings>);
BENCHMARK(caption<LinuxSurroundings>);
BENCHMARK(rowLayout<MemorySurroundings>);
BENCHMARK(rowLayout<LinuxSurroundings>);
BENCHMARK(frame<LinuxSurroundings>);
BENCHMARK(phoneFrame);
BENCHMARK(scroll<MemorySurroundings>);
BENCHMARK(scroll<LinuxSurroundings>);
BENCHMARK(dragFrame);
BENCHMARK(flingFrames)->Unit(benchmark::kMillisecond);
BENCHMARK(phoneFlingFrames)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
