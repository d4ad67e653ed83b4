// The agenda in a window of its own on the desktop, live.
#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "platform/geometry.h"
#include "shells/window/agenda_host.h"
#include "shells/window/agenda_window_options.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::shells {
class LivePresenter;
} // namespace quorvel::shells

namespace quorvel::window {

enum class KeyCommand;
class MainLoop;

// Presents the widget at first and whenever it is out of date, follows the sizes that it asks for,
// and quits the loop when it is closed. What fails while it is open ends the loop.
class AgendaWindow final : private AgendaObserver {
public:
    // The platform, the bundle and the loop outlive the window. GTK has been initialised. Throws
    // freedesktop::UnknownClassError.
    AgendaWindow(freedesktop::FreedesktopPlatform& platform,
                 const freedesktop::LoadedBundle& bundle, AgendaWindowOptions options,
                 MainLoop& loop);
    ~AgendaWindow() override;
    AgendaWindow(const AgendaWindow&) = delete;
    AgendaWindow& operator=(const AgendaWindow&) = delete;

    void show(); // once; throws what fails in the widget

private:
    void agendaLooksDifferent() override;
    void agendaWantsSize() override;
    void agendaPresented() override;
    void agendaFocusMoved() override;
    void agendaFingerCameOrWent() override;

    void makeWindow();
    void connectSignals();
    void connectScreenSignals();
    void present();
    void describeMissingCalendars();
    bool isTranslucent() const;
    platform::CGRect placeOfArea() const;
    void paintBehind(cairo_t* context);
    void paintAbove(cairo_t* context);
    bool pressKey(const GdkEventKey& event);
    void run(KeyCommand command);
    bool pressButton(const GdkEventButton& event);
    void changeScale();
    void changeState(const GdkEventWindowState& event);
    void fitToMonitor();

    template <class Work>
    void guarded(Work work) noexcept;

    freedesktop::FreedesktopPlatform& m_platform;
    AgendaWindowOptions m_options;
    MainLoop& m_loop;
    AgendaHost m_host;
    GtkWidget* m_window = nullptr; // GTK's own; null before it is shown
    GtkWidget* m_area = nullptr;
    std::unique_ptr<shells::LivePresenter> m_presenter; // while the window is open
};

} // namespace quorvel::window
