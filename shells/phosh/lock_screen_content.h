// What the widget on the lock screen consists of, as a C++ object.
#pragma once

#include <atomic>
#include <exception>
#include <memory>
#include <optional>

#include <gtk/gtk.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/launch/desktop_launcher.h"
#include "freedesktop/session/desktop_appearance.h"
#include "freedesktop/session/feedback_device.h"
#include "shells/gtk/agenda_widget.h"
#include "shells/gtk/desktop_launch_context.h"
#include "shells/phosh/agenda_session.h"
#include "shells/phosh/first_frame.h"
#include "shells/phosh/lock_screen_settings.h"

namespace quorvel::phosh {

// Belongs to the shell's thread. Shows nothing until the session has made its parts. Presents the
// agenda while it is mapped, but not before the first frame after that, which shows what is known.
// After an exception of the agenda, which it logs, it shows nothing any more.
class LockScreenContent final : private gtk::AgendaWidgetObserver {
public:
    // Adds its widget to the container, which outlives it. Throws std::system_error or
    // std::bad_alloc where the system lacks threads or memory.
    explicit LockScreenContent(GtkContainer* container);
    ~LockScreenContent() override; // never waits
    LockScreenContent(const LockScreenContent&) = delete;
    LockScreenContent& operator=(const LockScreenContent&) = delete;

private:
    void onWantedSizeChanged() override {}
    void onPresented() override {}
    void onPullBecameFirm() override { m_feedback.press(); }
    void onFailure(std::exception_ptr failure) noexcept override;

    void connectSignals();
    void showParts();
    void presentAfterFirstFrame();
    void hide();
    void updateScale();
    void updatePrivacy();
    void presentForPrivacy();
    void updateAppearance();

    // Runs the work; logs an exception and shows nothing any more.
    template <class Work>
    void guarded(Work work) noexcept;

    std::shared_ptr<platform::SystemLog> m_log;
    LockScreenSettings m_settings;
    std::shared_ptr<std::atomic<bool>> m_showsDetails; // also for the session's thread
    gtk::DesktopLaunchContext m_launchContext;
    freedesktop::DesktopLauncher m_launcher;
    AgendaSession m_session;
    gtk::AgendaWidget m_agenda;
    FirstFrame m_firstFrame;
    freedesktop::FeedbackDevice m_feedback;
    std::optional<freedesktop::DesktopAppearance> m_desktop; // while there are parts
    freedesktop::DelayedCall m_failure;                      // leaves the call that failed first
    bool m_isPrivacyPending = false; // the setting has changed while the parts were being made
    GtkWidget* m_area;               // of m_agenda
};

} // namespace quorvel::phosh
