// The whole window with real files and a running clock: it follows them while open, and nothing of
// it runs after it was closed.
#include "shells/window/agenda_window.h"

#include <memory>

#include <gmock/gmock.h>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "platform/clock.h"
#include "shells/window/main_loop.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::window {
namespace {

using namespace testing_session;
using freedesktop::CalendarSource;
using freedesktop::TimeZone;
using platform::NSDate;

class ClosedWindowTest : public testing::Test {
protected:
    ClosedWindowTest() {
        std::filesystem::create_directories(folder / "Preferences");
        std::filesystem::create_directories(folder / "calendars");
        writeCalendar("Before");
        writeGarbage(0);
        options.makeRendering = freedesktop::makeLinkedRendering;
        options.timeZone = freedesktop::namedTimeZone("UTC");
        options.followsTimeZone = false;
        options.locale = "en_US";
        options.followsLocale = false;
        options.preferencesFolder = folder / "Preferences";
        options.calendars = {CalendarSource::at(folder / "calendars")};
        options.clockRuns = true;
        options.logs = {log};
    }
    ~ClosedWindowTest() override { window.reset(); }

    // Ends at noon.
    void writeCalendar(const std::string& title) const {
        replace(folder / "calendars/one.ics",
                "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:a\r\n"
                "DTSTART:20260310T110000Z\r\nDTEND:20260310T120000Z\r\nSUMMARY:" +
                    title + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    }
    // The widget logs a problem with this file at each presentation.
    void writeGarbage(int number) const {
        replace(folder / "Preferences/org.quorvel.quorvelprefs.plist",
                "bplist00 garbage " + std::to_string(number));
    }
    void open(double secondsBeforeNoon) {
        window.reset();
        bundle.reset();
        options.now = NSDate{noon.timeIntervalSinceReferenceDate - secondsBeforeNoon};
        platform.emplace(options);
        bundle = platform->loadBundle(QUORVEL_BUNDLE).value();
        loop.emplace();
        appearance.emplace();
        window =
            std::make_unique<AgendaWindow>(*platform, *bundle, AgendaWindowOptions{},
                                           makeWindowPlacement({}).value(), *appearance, *loop);
        window->show();
    }
    // As the user closes it.
    void close() {
        GList* const shown = gtk_window_list_toplevels();
        gtk_window_close(GTK_WINDOW(shown->data));
        g_list_free(shown);
        loop->run();
        window.reset();
    }
    double secondsBeforeNoon() {
        return noon.timeIntervalSinceDate(platform->platform().clock.now());
    }
    bool isPresented() {
        const std::size_t before = log->lines().size();
        return runUntil([&] { return log->lines().size() > before; });
    }

    const NSDate noon =
        freedesktop::parseInstant("2026-03-10T12:00:00Z", *freedesktop::namedTimeZone("UTC"))
            .value();
    TemporaryFolder folder;
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    freedesktop::FreedesktopOptions options;
    std::optional<freedesktop::FreedesktopPlatform> platform;
    std::shared_ptr<const freedesktop::LoadedBundle> bundle;
    std::optional<MainLoop> loop;
    std::optional<WindowAppearance> appearance;
    std::unique_ptr<AgendaWindow> window;
};

TEST_F(ClosedWindowTest, AnOpenWindowFollowsItsFilesAndItsClock) {
    open(3600);
    runFor(0.3);
    writeGarbage(1);
    EXPECT_TRUE(isPresented());
    runFor(0.3);
    writeCalendar("After");
    EXPECT_TRUE(isPresented());
    // Tries ever longer times before noon, until one is longer than the start of the window.
    for (const double seconds : {0.3, 1.0, 3.0}) {
        open(seconds);
        if (secondsBeforeNoon() > 0.1) {
            EXPECT_TRUE(isPresented());
            return;
        }
    }
    FAIL() << "the window takes too long to open";
}

TEST_F(ClosedWindowTest, NothingRunsAfterwards) {
    // Tries ever longer times before noon, until one is longer than the start of the window.
    for (const double seconds : {1, 3, 10, 30}) {
        open(seconds);
        runFor(0.2);
        writeGarbage(1);
        runFor(0.05); // the change is known, but its presentation still waits
        close();
        const double left = secondsBeforeNoon();
        if (left <= 0) {
            continue;
        }
        log->clear();
        writeGarbage(2);
        writeCalendar("After");
        runFor(left + 0.5);
        EXPECT_THAT(log->lines(), testing::IsEmpty());
        EXPECT_EQ(wakeUpsDuring(0.3), 0);
        return;
    }
    FAIL() << "the window takes too long to open";
}

} // namespace
} // namespace quorvel::window
