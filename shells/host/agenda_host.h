// Hosts the widget on a desktop, without a toolkit: places it in a tree of views, follows the sizes
// that it requests, and lets it scroll where it is higher than its window.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/geometry.h"
#include "platform/platform.h"
#include "platform/ui/ui_window.h"
#include "platform/widget_host.h"
#include "shells/host/agenda_rows.h"
#include "shells/widget/appearance.h"
#include "shells/widget/notices.h"

namespace quorvel::platform {
class UIScrollView;
} // namespace quorvel::platform

namespace quorvel::freedesktop {
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::shells {
class HostedWidget;
class NoticeViews;
} // namespace quorvel::shells

namespace quorvel::shells {

// Shows the host's views. Notified immediately, also from inside methods of the host.
class AgendaObserver {
public:
    virtual ~AgendaObserver() = default;
    virtual void onAppearanceChanged() = 0; // or a motion has begun
    virtual void onWantedSizeChanged() = 0;
    virtual void onRowsChanged() = 0; // after a presentation
    virtual void onFocusMoved() = 0;
    virtual void onFingerDownChanged() = 0; // a finger came down or was lifted
    // The finger has pulled a row far enough: lifting it now has the row's effect.
    virtual void onPullBecameFirm() = 0;
};

struct AgendaHostOptions {
    std::string controllerName;             // empty: the bundle's principal class
    std::optional<platform::CGFloat> width; // points; absent: the width that the widget prefers
    std::function<CalendarState()> calendarState; // called after each presentation
    std::function<double()> frameTime;            // the current time of the frame clock, in seconds
    Appearance appearance = standardAppearance(AppearanceKind::dark);
};

class AgendaHost final : public platform::SBUIWidgetHost, private platform::SBUIWidgetHostDelegate {
public:
    // The bundle and the platform outlive the host. The bundle has the controller's class.
    AgendaHost(const freedesktop::LoadedBundle& bundle, const platform::Platform& platform,
               AgendaHostOptions options);
    ~AgendaHost() override;
    AgendaHost(const AgendaHost&) = delete;
    AgendaHost& operator=(const AgendaHost&) = delete;

    // Not owned; null: none.
    void setObserver(AgendaObserver* observer) { m_observer = observer; }

    // Presents the widget, for the first time or again, and adopts the preferred size that the
    // widget reports meanwhile or, where it only invalidates the old size, returns on request.
    void present();
    void dismiss();

    // Takes effect immediately, without a presentation. The host paints no backdrop.
    void setAppearance(const Appearance& appearance);
    const Appearance& appearance() const { return m_options.appearance; }

    // The size that shows the whole widget and the notices, limited to setGreatestHeight(). Whole
    // points, as windows need them, and at least one.
    platform::CGSize wantedSize() const;
    void setGreatestHeight(platform::CGFloat height); // points
    // The size that the window provides. The widget is given its width, and scrolls where it is
    // higher.
    void setAreaSize(platform::CGSize size);

    platform::UIWindow& window() { return *m_window; }
    AgendaRows& rows() { return *m_rows; }
    const AgendaRows& rows() const { return *m_rows; }
    // False where a line replaces the rows because there is not one calendar to read.
    bool hasCalendars() const { return m_hasCalendars; }
    // What the user can read in place of the rows and below them, for screen readers.
    const Notices& notices() const;

    // Input. Locations are points of the area, times seconds of the frame clock.
    void sendFinger(const platform::FingerReport& report);
    void cancelFinger(double time);
    void tap(const platform::CGPoint& location); // after the finger was lifted
    void advance(double time);                   // continues what moves
    // Scrolls the innermost view under the point that can move that way, within its edges. False
    // where there is no such view.
    bool scrollVertically(const platform::CGPoint& location, platform::CGFloat distance);
    bool isOnRow(const platform::CGPoint& location);
    bool canDragHorizontally(const platform::CGPoint& location);
    bool canDragVertically(const platform::CGPoint& location);

private:
    platform::SBUIWidgetHostDelegate* delegate() override { return this; }
    bool respondsToInvalidatePreferredViewSize() const override { return true; }
    void invalidatePreferredViewSize() override { m_isSizeInvalid = true; }
    bool respondsToDidUpdatePreferredSize() const override { return true; }
    void didUpdatePreferredSize(platform::SBUIWidgetHost& widget, platform::CGSize size) override;

    void applyAppearance();
    void requestFirstSize();
    void presentWidget();
    void updateNotices();
    platform::CGFloat width() const;
    platform::CGFloat contentHeight() const;
    void layOut();
    bool isChanging() const;
    void notifyFirmPull();
    void notify(void (AgendaObserver::*event)());
    std::shared_ptr<platform::UIView> viewAt(const platform::CGPoint& location);

    platform::Platform m_platform;
    AgendaHostOptions m_options;
    AgendaObserver* m_observer = nullptr;
    std::shared_ptr<platform::UIWindow> m_window;
    std::shared_ptr<platform::UIScrollView> m_scroller; // fills the window, holds the widget
    std::unique_ptr<NoticeViews> m_notices;             // in front of the widget
    bool m_hasCalendars = true;                         // at the latest presentation
    std::unique_ptr<HostedWidget> m_widget;
    std::unique_ptr<AgendaRows> m_rows;
    bool m_isPullFirm = false; // that of the finger
    bool m_isFirstSizeKnown = false;
    bool m_isSizeInvalid = false; // the widget invalidated its preferred size
    platform::CGSize m_preferredSize;
    platform::CGFloat m_greatestHeight;
    std::optional<platform::CGSize> m_areaSize; // absent before setAreaSize()
};

} // namespace quorvel::shells
