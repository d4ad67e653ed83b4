// One controller of a bundle, in a window that only records, driven as a shell drives it.
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
    // The bundle and the platform outlive the session. An empty name: the bundle's principal
    // class. Throws freedesktop::BundleError for a class that the bundle does not have.
    WidgetSession(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                  const platform::Platform& platform);
    ~WidgetSession();
    WidgetSession(const WidgetSession&) = delete;
    WidgetSession& operator=(const WidgetSession&) = delete;

    // Before anything else. A legacy controller's view waits until it is needed. `width` (points)
    // is for every view that is made from here on; without it a view has its own.
    void load(std::optional<platform::CGFloat> width = std::nullopt);
    // load(), with the rows: a legacy controller's full view too.
    void loadWithRows();
    // Afterwards the view is in a window of its size. A view that exists already stays unchanged.
    void makeView();
    shells::HostedWidget& widget() { return m_widget; }

    // Gives the view that size, in a window as large, and lays it out.
    void resizeView(platform::CGSize size);
    void layOut();
    // Runs every motion to its end, then lays out.
    void settle();

    // Ends a drag of the row with its content `distance` points to the right.
    void pullRow(std::size_t row, platform::CGFloat distance);
    // A finger comes down at a point of the view, moves, rests and lifts.
    void drag(const platform::CGPoint& start, platform::CGSize way);

    // What the widget's latest query of the calendars was; absent where it made none.
    const std::optional<RecordedQuery>& latestQuery() const { return m_stores.latestQuery(); }
    // Since the last call of each.
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
    platform::Platform m_platform; // the host's, with the records in it
    std::shared_ptr<RecordingWindow> m_window;
    shells::HostedWidget m_widget;
    std::optional<platform::CGFloat> m_width; // points
    double m_time = 0; // seconds of a frame clock that runs only while something happens
};

} // namespace quorvel::headless
