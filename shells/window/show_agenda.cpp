#include "shells/window/show_agenda.h"

#include <csignal>
#include <utility>

#include <glib-unix.h>

#include "freedesktop/freedesktop_platform.h"
#include "shells/window/agenda_window.h"
#include "shells/window/display_loss.h"
#include "shells/window/gtk_handles.h"
#include "shells/window/main_loop.h"
#include "shells/window/toolkit.h"

namespace quorvel::window {

namespace {

constexpr double longestLaunch = 3; // seconds

guint quitAtSignal(int signal, MainLoop& loop) {
    const GSourceFunc quit = [](gpointer data) -> gboolean {
        static_cast<MainLoop*>(data)->quit();
        return G_SOURCE_CONTINUE;
    };
    return g_unix_signal_add(signal, quit, &loop);
}

} // namespace

Result<void> showAgenda(freedesktop::FreedesktopPlatform& platform,
                        const freedesktop::LoadedBundle& bundle, AgendaWindowOptions options,
                        void (*onDisplayLost)()) {
    platform.beginReadingCalendars(); // while the toolkit starts
    if (const Result<void> started = startToolkit(); !started) {
        return started;
    }
    exitWhenDisplayIsLost(onDisplayLost);
    MainLoop loop;
    const SourceHandle interrupted(quitAtSignal(SIGINT, loop));
    const SourceHandle terminated(quitAtSignal(SIGTERM, loop));
    const SourceHandle hungUp(quitAtSignal(SIGHUP, loop));
    {
        AgendaWindow window(platform, bundle, std::move(options), loop);
        window.show();
        loop.run();
    }
    platform.waitForLaunches(longestLaunch);
    return {};
}

} // namespace quorvel::window
