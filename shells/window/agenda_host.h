// The widget's host on a desktop, without a toolkit: it gives the widget a place in a tree of views
// that scrolls where the place is too small, and follows every size that the widget asks for.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/geometry.h"
#include "platform/platform.h"
#include "platform/ui/ui_window.h"
#include "platform/widget_host.h"
#include "shells/window/agenda_rows.h"

namespace quorvel::platform {
class UILabel;
class UIScrollView;
} // namespace quorvel::platform

namespace quorvel::freedesktop {
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::shells {
class HostedWidget;
} // namespace quorvel::shells

namespace quorvel::window {

// Whoever shows the host's views. Told at once, also while calling the host.
class AgendaObserver {
public:
    virtual ~AgendaObserver() = default;
    virtual void agendaLooksDifferent() = 0; // or has begun to move
    virtual void agendaWantsSize() = 0;      // wantedSize() is another
    virtual void agendaPresented() = 0;      // the rows are others
    virtual void agendaFocusMoved() = 0;
    virtual void agendaFingerCameOrWent() = 0;
};

struct AgendaHostOptions {
    std::string controllerName;             // empty: the bundle's principal class
    std::optional<platform::CGFloat> width; // points; absent: the one that the widget asks for
    // Shown in one line after a presentation for which there were no calendars to read.
    std::string noCalendarsText;
    std::function<bool()> hasCalendars;
    std::function<double()> frameTime; // now, in seconds of the frame clock
};

class AgendaHost final : public platform::SBUIWidgetHost, private platform::SBUIWidgetHostDelegate {
public:
    // The bundle and the platform outlive the host. Throws freedesktop::UnknownClassError.
    AgendaHost(const freedesktop::LoadedBundle& bundle, const platform::Platform& platform,
               AgendaHostOptions options);
    ~AgendaHost() override;
    AgendaHost(const AgendaHost&) = delete;
    AgendaHost& operator=(const AgendaHost&) = delete;

    // Not owned; null: nobody.
    void setObserver(AgendaObserver* observer) { m_observer = observer; }

    // Presents the widget, for the first time or again, and follows the size that it asks for: the
    // size told to the host's delegate, or where the host was to ask again, the answer to that.
    void present();
    void dismiss();

    // The size that shows the whole widget, but no higher than setGreatestHeight() allows. Whole
    // points, as windows have them, and at least one.
    platform::CGSize wantedSize() const;
    void setGreatestHeight(platform::CGFloat height);
    // The size that it gets; the widget takes that width, and is scrolled where it is higher.
    void setAreaSize(platform::CGSize size);

    platform::UIWindow& window() { return *m_window; }
    AgendaRows& rows() { return *m_rows; }
    bool isShowingNoCalendars() const;
    const std::string& noCalendarsText() const { return m_options.noCalendarsText; }

    // Input, in points of the area.
    void sendFinger(const platform::FingerReport& report);
    void cancelFinger(double time);
    void tap(const platform::CGPoint& location); // a finger has come and gone there
    void advance(double time);
    // Moves the deepest view under the point that can be scrolled that way, within its edges.
    bool scrollVertically(const platform::CGPoint& location, platform::CGFloat distance);
    bool isOnRow(const platform::CGPoint& location);
    bool canDragHorizontally(const platform::CGPoint& location);
    bool canDragVertically(const platform::CGPoint& location);

private:
    platform::SBUIWidgetHostDelegate* delegate() override { return this; }
    bool respondsToInvalidatePreferredViewSize() const override { return true; }
    void invalidatePreferredViewSize() override { m_isToAskAgain = true; }
    bool respondsToDidUpdatePreferredSize() const override { return true; }
    void didUpdatePreferredSize(platform::SBUIWidgetHost& widget, platform::CGSize size) override;

    void load();
    void presentWidget();
    void showNoCalendars(bool shown);
    platform::CGFloat width() const;
    platform::CGFloat contentHeight() const;
    void layOut();
    bool isChanging() const;
    void tell(void (AgendaObserver::*message)());
    std::shared_ptr<platform::UIView> viewAt(const platform::CGPoint& location);

    platform::Platform m_platform;
    AgendaHostOptions m_options;
    AgendaObserver* m_observer = nullptr;
    std::shared_ptr<platform::UIWindow> m_window;
    std::shared_ptr<platform::UIScrollView> m_scroller; // fills the window, holds the widget
    std::shared_ptr<platform::UILabel> m_noCalendars;   // over the widget
    std::unique_ptr<shells::HostedWidget> m_widget;
    std::unique_ptr<AgendaRows> m_rows;
    bool m_isLoaded = false;
    bool m_isToAskAgain = false;
    platform::CGSize m_preferredSize;
    platform::CGFloat m_greatestHeight;
    std::optional<platform::CGSize> m_areaSize; // absent before there is one
};

} // namespace quorvel::window
