// Runs one controller of a bundle in a window without a screen, and records what it does.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/platform.h"
#include "shells/headless/recording_calendar_stores.h"
#include "shells/headless/recording_host.h"
#include "shells/headless/recording_launcher.h"
#include "shells/headless/recording_log.h"
#include "shells/headless/recording_window.h"
#include "shells/widget/hosted_widget.h"

namespace quorvel::headless {

class WidgetSession {
public:
    // The bundle and the platform outlive the session. `controllerName` is a class of the bundle;
    // empty: the bundle's principal class.
    WidgetSession(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                  const platform::Platform& platform);
    ~WidgetSession();
    WidgetSession(const WidgetSession&) = delete;
    WidgetSession& operator=(const WidgetSession&) = delete;

    // Call this first. Creates the view, except a legacy controller's, which is created when it is
    // needed. `width` (points) applies to every view that is created from here on; absent: the
    // view's own width.
    void load(std::optional<platform::CGFloat> width = std::nullopt);
    // load(), and also loads a legacy controller's full view.
    void loadWithRows();
    // Creates the view in a window of its size. Does nothing where the view exists already.
    void makeView();
    shells::HostedWidget& widget() { return m_widget; }

    // Resizes the view and its window, and lays the view out.
    void resizeView(platform::CGSize size);
    void layOut();
    // Advances the clock until nothing moves, then lays out.
    void settle();

    // Drags the row's content `distance` points to the right and lifts the finger.
    void pullRow(std::size_t row, platform::CGFloat distance);
    // Puts a finger down at a point of the view, moves it, rests and lifts it.
    void drag(const platform::CGPoint& start, platform::CGSize distance);

    // The widget's latest query of the calendars; absent without one.
    const std::optional<RecordedQuery>& latestQuery() const { return m_stores.latestQuery(); }
    // Each returns what was recorded since its last call.
    std::vector<HostMessage> takeHostMessages() { return m_host.takeMessages(); }
    std::vector<std::string> takeOpened() { return m_launcher.takeOpened(); }
    std::vector<std::string> takeActivated() { return m_launcher.takeActivated(); }
    std::vector<TouchMessage> takeTouchMessages() { return m_window->takeTouchMessages(); }
    std::vector<std::string> takeLogLines() { return m_log.takeLines(); }
    const platform::Platform& platform() const { return m_platform; }

private:
    void sendFinger(platform::UITouchPhase phase, const platform::CGPoint& location);

    RecordingCalendarStores m_stores;
    RecordingLog m_log;
    RecordingHost m_host;
    RecordingLauncher m_launcher;
    platform::Platform m_platform; // the constructor's, with the recording services
    std::shared_ptr<RecordingWindow> m_window;
    shells::HostedWidget m_widget;
    std::optional<platform::CGFloat> m_width; // points
    double m_time = 0; // seconds of a frame clock that advances only during input and motions
};

} // namespace quorvel::headless
