// The agenda as one GTK widget: what a window, a layer of the desktop and the phone's shell put
// into their surroundings. It passes input and keys on to its host, and presents the widget again
// whenever its rows may be out of date.
#pragma once

#include <exception>
#include <memory>

#include <gtk/gtk.h>

#include "platform/geometry.h"
#include "shells/host/agenda_host.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
} // namespace quorvel::freedesktop

namespace quorvel::shells {
class LivePresenter;
} // namespace quorvel::shells

namespace quorvel::gtk {

enum class KeyCommand;

// The surroundings of the widget. Notified immediately, also from inside methods of the widget.
class AgendaWidgetObserver {
public:
    virtual ~AgendaWidgetObserver() = default;
    virtual void onWantedSizeChanged() = 0;
    virtual void onPresented() = 0;
    virtual void onPullBecameFirm() = 0; // see shells::AgendaObserver
    // An exception of the host or the bundle's controller, which was thrown while GTK was calling.
    // The widget remains usable. Not called from inside show(), hide() and present().
    virtual void onFailure(std::exception_ptr failure) noexcept = 0;
};

// Belongs to GTK's thread.
class AgendaWidget final : private shells::AgendaObserver {
public:
    // The observer outlives the widget. Without content it shows nothing.
    explicit AgendaWidget(AgendaWidgetObserver& observer);
    // Dismisses nothing. Nothing of it runs afterwards, even where GTK holds the widget longer.
    ~AgendaWidget() override;
    AgendaWidget(const AgendaWidget&) = delete;
    AgendaWidget& operator=(const AgendaWidget&) = delete;

    GtkWidget* widget() const { return m_area; }

    // Both stay alive until removeContent() or the widget's destruction. The host may have been
    // presented before, also on another thread that does not use it any more.
    void setContent(freedesktop::FreedesktopPlatform& platform, shells::AgendaHost& host);
    void removeContent();                         // dismisses nothing
    shells::AgendaHost* host() { return m_host; } // null without content

    // Whether the user can see the widget: presents and dismisses the bundle's controller. Between
    // hide() and show() nothing is presented. Without content, these have no effect.
    void show();
    void hide();
    bool isShown() const { return m_isShown; }
    void present(); // again; only while shown

    // Without content, these have no effect.
    // Pixels per point of the monitor; presents again where it changes the pictures.
    void setScale(platform::CGFloat scale);
    void setAppearance(const shells::Appearance& appearance);
    // These present again, as the rows' heights follow the texts.
    void setTextScale(platform::CGFloat scale); // see TextLines::setTextScale()
    void reloadFonts();                         // after the desktop's font has changed
    // The size that shows all rows, limited to setGreatestHeight(); {1, 1} without content.
    platform::CGSize wantedSize() const;
    void setGreatestHeight(platform::CGFloat height); // points

    // Moves the focus of the rows, runs the action of a row, or presents again and has subscribed
    // calendars fetched. False for all other commands.
    bool run(KeyCommand command);

private:
    void onAppearanceChanged() override;
    void onWantedSizeChanged() override;
    void onRowsChanged() override;
    void onFocusMoved() override;
    void onFingerDownChanged() override;
    void onPullBecameFirm() override { m_observer.onPullBecameFirm(); }

    void presentSafely() noexcept;
    void describeNotices();
    void updatePause();

    AgendaWidgetObserver& m_observer;
    GtkWidget* m_area; // a reference of ours
    freedesktop::FreedesktopPlatform* m_platform = nullptr;
    shells::AgendaHost* m_host = nullptr;
    std::unique_ptr<shells::LivePresenter> m_presenter; // while there is content
    bool m_isShown = false;
};

} // namespace quorvel::gtk
