// The agenda in a window of its own on the desktop, which stays up to date.
#pragma once

#include <exception>
#include <memory>

#include <gtk/gtk.h>

#include "platform/geometry.h"
#include "shells/gtk/agenda_host.h"
#include "shells/gtk/agenda_widget.h"
#include "shells/window/agenda_window_options.h"
#include "shells/window/window_placement.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::window {

class MainLoop;

// Presents the widget first and whenever it goes out of date, resizes itself to the size that the
// widget requests, and quits the loop when the user closes it. An exception of the widget while it
// is open ends the loop, which throws it again.
class AgendaWindow final : private gtk::AgendaWidgetObserver {
public:
    // The platform, the bundle and the loop outlive the window. Call startToolkit() before. The
    // bundle has the controller's class.
    AgendaWindow(freedesktop::FreedesktopPlatform& platform,
                 const freedesktop::LoadedBundle& bundle, AgendaWindowOptions options,
                 std::unique_ptr<WindowPlacement> placement, MainLoop& loop);
    ~AgendaWindow() override;
    AgendaWindow(const AgendaWindow&) = delete;
    AgendaWindow& operator=(const AgendaWindow&) = delete;

    void show(); // once; passes on exceptions of the widget

private:
    void onWantedSizeChanged() override;
    void onPresented() override {}
    void onPullBecameFirm() override {}
    void onFailure(std::exception_ptr failure) noexcept override;

    void makeWindow();
    void connectSignals();
    void connectScreenSignals();
    bool isTranslucent() const;
    platform::CGRect frameOfArea() const;
    void paintBackground(cairo_t* context);
    void clearRoundedCorners(cairo_t* context);
    bool handleKey(const GdkEventKey& event);
    bool handleButton(const GdkEventButton& event);
    void updateScale();
    void handleStateChange(const GdkEventWindowState& event);
    GdkMonitor* currentMonitor() const; // null where there is none
    void limitHeightToMonitor();

    // Runs the work; an exception ends the loop, as none may leave a function that GTK calls.
    template <class Work>
    void guarded(Work work) noexcept;

    freedesktop::FreedesktopPlatform& m_platform;
    AgendaWindowOptions m_options;
    std::unique_ptr<WindowPlacement> m_placement;
    MainLoop& m_loop;
    gtk::AgendaHost m_host;
    gtk::AgendaWidget m_agenda;
    GtkWidget* m_window = nullptr; // owned by GTK; null before show()
};

} // namespace quorvel::window
