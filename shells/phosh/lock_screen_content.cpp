#include "shells/phosh/lock_screen_content.h"

#include <string>
#include <utility>

#include "freedesktop/language/catalogs.h"
#include "shells/phosh/plugin_folders.h"
#include "shells/phosh/shell_log.h"

namespace quorvel::phosh {

namespace {

struct MonitorSize {
    platform::CGFloat scale = 1;     // pixels per point
    platform::CGFloat height = 1440; // points; a large phone's, where there is no monitor
};

// Of the first monitor, as the lock screen is not on any yet.
MonitorSize monitorSize() {
    GdkDisplay* const display = gdk_display_get_default();
    GdkMonitor* const monitor = display != nullptr ? gdk_display_get_monitor(display, 0) : nullptr;
    if (monitor == nullptr) {
        return {};
    }
    GdkRectangle frame;
    gdk_monitor_get_geometry(monitor, &frame);
    return {static_cast<platform::CGFloat>(gdk_monitor_get_scale_factor(monitor)),
            static_cast<platform::CGFloat>(frame.height)};
}

ShellServices shellServices(freedesktop::DesktopLauncher& launcher,
                            std::shared_ptr<platform::SystemLog> log,
                            std::shared_ptr<const std::atomic<bool>> showsDetails) {
    const MonitorSize monitor = monitorSize();
    return {launcher,       launcher,
            std::move(log), [shows = std::move(showsDetails)] { return shows->load(); },
            monitor.scale,  monitor.height};
}

std::string describe(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown";
    }
}

} // namespace

template <class Work>
void LockScreenContent::guarded(Work work) noexcept {
    try {
        work();
    } catch (...) {
        onFailure(std::current_exception());
    }
}

LockScreenContent::LockScreenContent(GtkContainer* container)
    : m_log(std::make_shared<ShellLog>())
    , m_showsDetails(std::make_shared<std::atomic<bool>>(m_settings.showsDetailsWhenLocked()))
    , m_launcher(*m_log)
    , m_session(
          [shell = shellServices(m_launcher, m_log, m_showsDetails)] {
              return AgendaParts::make(shell, pluginFolders());
          },
          m_log, [this] { guarded([this] { showParts(); }); })
    , m_agenda(*this)
    , m_firstFrame([this] { guarded([this] { m_agenda.show(); }); })
    , m_failure([this] { m_agenda.removeContent(); })
    , m_area(m_agenda.widget()) {
    freedesktop::useCatalogs(pluginFolders().catalogs);
    m_launcher.setLaunchContext(&m_launchContext);
    gtk_widget_set_hexpand(m_area, TRUE);
    gtk_container_add(container, m_area);
    gtk_widget_show(m_area);
    connectSignals();
    m_settings.setChangedHandler([this] { guarded([this] { updatePrivacy(); }); });
}

LockScreenContent::~LockScreenContent() {
    g_signal_handlers_disconnect_by_data(m_area, this);
    guarded([this] { m_agenda.hide(); });
    m_agenda.removeContent(); // before the session takes the parts back
}

void LockScreenContent::connectSignals() {
    using Handler = void (*)(GtkWidget*, LockScreenContent*);
    const Handler mapped = [](GtkWidget*, LockScreenContent* content) {
        content->guarded([&] { content->presentAfterFirstFrame(); });
    };
    const Handler unmapped = [](GtkWidget*, LockScreenContent* content) {
        content->guarded([&] { content->hide(); });
    };
    using ScaleHandler = void (*)(GtkWidget*, GParamSpec*, LockScreenContent*);
    const ScaleHandler scaleChanged = [](GtkWidget*, GParamSpec*, LockScreenContent* content) {
        content->guarded([&] { content->updateScale(); });
    };
    g_signal_connect(m_area, "map", G_CALLBACK(mapped), this);
    g_signal_connect(m_area, "unmap", G_CALLBACK(unmapped), this);
    g_signal_connect(m_area, "notify::scale-factor", G_CALLBACK(scaleChanged), this);
}

void LockScreenContent::showParts() {
    AgendaParts* const parts = m_session.parts();
    if (parts == nullptr) {
        return;
    }
    m_agenda.setContent(parts->platform(), parts->host());
    updateScale();
    m_desktop.emplace([this] { guarded([this] { updateAppearance(); }); });
    updateAppearance();
    if (m_isPrivacyPending) {
        presentForPrivacy();
    }
    if (gtk_widget_get_mapped(m_area) != FALSE) {
        presentAfterFirstFrame();
    }
}

void LockScreenContent::presentAfterFirstFrame() {
    if (m_agenda.host() != nullptr) {
        m_firstFrame.waitFor(m_area);
    }
}

void LockScreenContent::hide() {
    m_firstFrame.stop();
    m_agenda.hide();
}

void LockScreenContent::updateScale() {
    m_agenda.setScale(gtk_widget_get_scale_factor(m_area));
}

// The shell darkens its wallpaper, whatever colours the user prefers on the desktop.
void LockScreenContent::updateAppearance() {
    using shells::AppearanceKind;
    m_agenda.setAppearance(shells::standardAppearance(
        m_desktop->hasHighContrast() ? AppearanceKind::highContrastDark : AppearanceKind::dark));
    m_agenda.setTextScale(m_desktop->textScale());
}

void LockScreenContent::updatePrivacy() {
    *m_showsDetails = m_settings.showsDetailsWhenLocked();
    presentForPrivacy();
}

// Also while the page is not shown: its next first frame must not have details that are hidden now.
void LockScreenContent::presentForPrivacy() {
    m_isPrivacyPending = m_agenda.host() == nullptr;
    if (!m_isPrivacyPending) {
        m_agenda.host()->present();
    }
}

// The shell goes on without the agenda.
void LockScreenContent::onFailure(std::exception_ptr failure) noexcept {
    try {
        m_log->log("QRV: the agenda is not shown any more: " + describe(failure));
        m_failure.start(0);
    } catch (...) { // the memory is exhausted
    }
}

} // namespace quorvel::phosh
