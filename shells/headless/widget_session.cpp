#include "shells/headless/widget_session.h"

#include "platform/ui/ui_view.h"

namespace quorvel::headless {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGRect;
using platform::CGSize;
using platform::Platform;
using platform::UITouchPhase;

namespace {

constexpr double frameTime = 1.0 / 60; // seconds
constexpr double restBeforeLift = 1;   // seconds; long enough to prevent a fling
constexpr double longestMotion = 60;   // seconds

Platform recordingPlatform(const Platform& platform, RecordingCalendarStores& stores,
                           RecordingLog& log, RecordingLauncher& launcher) {
    return Platform{platform.clock,
                    platform.dateServices,
                    stores,
                    platform.preferences,
                    platform.textMeasurer,
                    platform.imageFiles,
                    platform.graphicsContexts,
                    platform.screen,
                    log,
                    platform.bundles,
                    launcher,
                    launcher};
}

} // namespace

WidgetSession::WidgetSession(const freedesktop::LoadedBundle& bundle,
                             std::string_view controllerName, const Platform& platform)
    : m_stores(platform.calendarStores)
    , m_log(platform.systemLog)
    , m_platform(recordingPlatform(platform, m_stores, m_log, m_launcher))
    , m_window(std::make_shared<RecordingWindow>(CGRect{}, platform.screen))
    , m_widget(bundle, controllerName, m_platform, m_host, *m_window) {}

WidgetSession::~WidgetSession() = default;

void WidgetSession::load(std::optional<CGFloat> width) {
    m_width = width;
    if (!m_widget.isLegacy()) {
        makeView();
    }
}

void WidgetSession::loadWithRows() {
    load();
    makeView();
    m_widget.loadFullView();
    layOut();
}

void WidgetSession::makeView() {
    if (m_widget.hasView()) {
        return;
    }
    const CGSize size = m_widget.view().frame().size;
    m_window->setFrame({{}, size});
    if (m_width) {
        resizeView({*m_width, size.height});
    }
    layOut();
}

void WidgetSession::resizeView(CGSize size) {
    m_window->setFrame({{}, size});
    m_widget.resizeView(size);
    layOut();
}

void WidgetSession::layOut() {
    m_window->layoutIfNeeded();
}

void WidgetSession::settle() {
    const double end = m_time + longestMotion;
    while (m_window->isMoving() && m_time < end) {
        m_time += frameTime;
        m_window->advance(m_time);
    }
    layOut();
}

void WidgetSession::pullRow(std::size_t row, CGFloat distance) {
    m_widget.pullRow(row, distance, m_time);
}

void WidgetSession::drag(const CGPoint& start, CGSize distance) {
    makeView();
    const CGPoint down = m_widget.view().convertPointToView(start, m_window.get());
    const CGPoint up{down.x + distance.width, down.y + distance.height};
    sendFinger(UITouchPhase::began, down);
    if (up != down) {
        sendFinger(UITouchPhase::moved, up);
    }
    m_time += restBeforeLift;
    sendFinger(UITouchPhase::ended, up);
}

void WidgetSession::sendFinger(UITouchPhase phase, const CGPoint& location) {
    constexpr std::int64_t finger = 1;
    m_time += frameTime;
    m_window->sendFinger({finger, phase, location, m_time});
}

} // namespace quorvel::headless
