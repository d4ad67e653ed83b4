#include "shells/window/show_agenda.h"

#include <csignal>
#include <optional>
#include <utility>

#include <glib-unix.h>

#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/glib/handles.h"
#include "shells/window/agenda_window.h"
#include "shells/window/display_loss.h"
#include "shells/window/main_loop.h"
#include "shells/window/single_instance.h"
#include "shells/window/toolkit.h"
#include "shells/window/window_appearance.h"

namespace quorvel::window {

namespace {

constexpr double longestLaunch = 3; // seconds

// For as long as the result lives.
freedesktop::SourceHandle quitAtSignal(int signal, MainLoop& loop) {
    const GSourceFunc quit = [](gpointer data) -> gboolean {
        static_cast<MainLoop*>(data)->quit();
        return G_SOURCE_CONTINUE;
    };
    freedesktop::SourceHandle source(g_unix_signal_source_new(signal));
    g_source_set_callback(source.get(), quit, &loop, nullptr);
    g_source_attach(source.get(), nullptr);
    return source;
}

} // namespace

Result<InstanceRole> showAgenda(freedesktop::FreedesktopPlatform& platform,
                                const freedesktop::LoadedBundle& bundle,
                                AgendaWindowOptions windowOptions, std::uint64_t options,
                                void (*onDisplayLost)()) {
    platform.beginReadingCalendars(); // while the toolkit starts
    if (const Result<void> started = startToolkit(); !started) {
        return started.error();
    }
    Result<std::unique_ptr<WindowPlacement>> placement = makeWindowPlacement(windowOptions);
    if (!placement) {
        return placement.error();
    }
    WindowAppearance appearance;
    std::optional<SingleInstance> instance; // absent for a layer: each output may have one
    if (!windowOptions.layer) {
        instance.emplace(options);
        if (instance->role() != InstanceRole::first) {
            return instance->role();
        }
    }
    exitWhenDisplayIsLost(onDisplayLost);
    MainLoop loop;
    const auto interrupted = quitAtSignal(SIGINT, loop);
    const auto terminated = quitAtSignal(SIGTERM, loop);
    const auto hungUp = quitAtSignal(SIGHUP, loop);
    {
        AgendaWindow window(platform, bundle, std::move(windowOptions), *std::move(placement),
                            appearance, loop);
        window.show();
        if (instance) {
            instance->setWindow(window.window(), [&window] { window.bringToFront(); });
        }
        loop.run();
        if (instance) {
            instance->setWindow(nullptr, nullptr);
        }
    }
    platform.waitForLaunches(longestLaunch);
    return InstanceRole::first;
}

} // namespace quorvel::window
