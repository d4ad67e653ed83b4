// The thread that presents the widget in a window.
#include "shells/window/agenda_window.h"

#include <memory>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "platform/system_log.h"
#include "shells/window/main_loop.h"

namespace quorvel::window {
namespace {

class ThreadRecorder final : public platform::SystemLog {
public:
    void log(std::string_view) override { threads.push_back(std::this_thread::get_id()); }
    std::vector<std::thread::id> threads;
};

// The widget logs a line whenever it loads its settings, as there are none.
TEST(PresentationThreadTest, IsTheThreadThatShowsTheWindow) {
    const auto recorder = std::make_shared<ThreadRecorder>();
    freedesktop::FreedesktopOptions options;
    options.makeRendering = freedesktop::makeLinkedRendering;
    options.timeZone = freedesktop::utcTimeZone();
    options.locale = "en_US";
    options.preferencesFolder = "/nonexistent";
    options.calendarWaits.emplace();
    options.logs = {recorder};
    freedesktop::FreedesktopPlatform platform(options);
    const auto bundle = platform.loadBundle(QUORVEL_BUNDLE).value();
    MainLoop loop;
    WindowAppearance appearance;
    AgendaWindow window(platform, *bundle, {}, makeWindowPlacement({}).value(), appearance, loop);
    window.show();
    ASSERT_FALSE(recorder->threads.empty());
    for (const std::thread::id& thread : recorder->threads) {
        EXPECT_EQ(thread, std::this_thread::get_id());
    }
}

} // namespace
} // namespace quorvel::window
