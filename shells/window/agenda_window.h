// The agenda in a window of its own on the desktop, which stays up to date.
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include <gtk/gtk.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/session/feedback_device.h"
#include "platform/geometry.h"
#include "shells/gtk/agenda_widget.h"
#include "shells/gtk/desktop_launch_context.h"
#include "shells/host/agenda_host.h"
#include "shells/window/agenda_window_options.h"
#include "shells/window/window_appearance.h"
#include "shells/window/window_placement.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::window {

class MainLoop;
class NoticeLine;
class RowActions;
class SettingsStart;
class WindowActions;
class WindowHeader;
enum class WindowKey;

// Presents the widget first and whenever it goes out of date, and quits the loop when the user
// closes it. Resizes itself to the size that the widget requests until the user chooses another. An
// exception of the widget while it is open ends the loop, which throws it again.
class AgendaWindow final : private gtk::AgendaWidgetObserver {
public:
    // What is referred to outlives the window. Call startToolkit() before. The bundle has the
    // controller's class.
    AgendaWindow(freedesktop::FreedesktopPlatform& platform,
                 const freedesktop::LoadedBundle& bundle, AgendaWindowOptions options,
                 std::unique_ptr<WindowPlacement> placement, WindowAppearance& appearance,
                 MainLoop& loop);
    ~AgendaWindow() override;
    AgendaWindow(const AgendaWindow&) = delete;
    AgendaWindow& operator=(const AgendaWindow&) = delete;

    void show(); // once; passes on exceptions of the widget
    void bringToFront();
    GtkWindow* window() const { return GTK_WINDOW(m_window); } // after show()

private:
    void onWantedSizeChanged() override;
    void onPresented() override;
    void onPullBecameFirm() override { m_feedback.press(); }
    void onFailure(std::exception_ptr failure) noexcept override;

    void makeWindow();
    void makeContent();
    void addActions();
    void connectSignals();
    void connectScreenSignals();
    void connectFirstFrame();
    void completeAfterFirstFrame();
    void showHeaderContents();
    void followDesktop();
    bool isTranslucent() const;
    platform::CGRect frameOfContent() const;
    void paintBackground(cairo_t* context);
    void clearRoundedCorners(cairo_t* context);
    bool handleKey(const GdkEventKey& event);
    void run(WindowKey key);
    void openManual();
    void openRowMenu(std::size_t row, const GdkEvent* event);
    std::string cutTextsAt(const std::optional<platform::CGPoint>& point);
    void runRowAction(std::size_t row);
    bool handlePressOnRow(std::size_t row, const GdkEventButton& event);
    bool handleButton(const GdkEventButton& event);
    void updateHeader();
    void updateScale();
    void updateHeaderPicture();
    void handleStateChange(const GdkEventWindowState& event);
    void limitHeightToMonitor();
    GdkMonitor* currentMonitor() const; // null where there is none
    void resizeToWantedSize();

    // Runs the work; an exception ends the loop, as none may leave a function that GTK calls.
    template <class Work>
    void guarded(Work work) noexcept;

    freedesktop::FreedesktopPlatform& m_platform;
    const freedesktop::LoadedBundle& m_bundle;
    AgendaWindowOptions m_options;
    std::unique_ptr<WindowPlacement> m_placement;
    MainLoop& m_loop;
    WindowAppearance& m_appearance;
    shells::AgendaHost m_host;
    gtk::AgendaWidget m_agenda;
    gtk::DesktopLaunchContext m_launchContext;
    freedesktop::FeedbackDevice m_feedback;
    // These are null before show(). GTK owns the widgets.
    GtkWidget* m_window = nullptr;
    GtkWidget* m_content = nullptr; // below the header
    GtkWidget* m_manualButton = nullptr;
    std::unique_ptr<WindowHeader> m_header;
    std::unique_ptr<NoticeLine> m_notice;
    std::unique_ptr<WindowActions> m_actions;
    std::unique_ptr<RowActions> m_rowActions; // null until a row's menu has been opened
    bool m_isDrawn = false;
    std::unique_ptr<SettingsStart> m_settings;
    freedesktop::DelayedCall m_rowAction; // after a double click
    std::optional<std::size_t> m_clickedRow;
};

} // namespace quorvel::window
