// Everything that one agenda on the lock screen is made of, apart from its GTK widget: the
// platform, the bundle, and the host with the bundle's views.
#pragma once

#include <functional>
#include <memory>

#include "base/result.h"
#include "freedesktop/freedesktop_platform.h"
#include "platform/platform.h"
#include "shells/host/agenda_host.h"
#include "shells/phosh/private_calendar_stores.h"

namespace quorvel::freedesktop {
class LoadedBundle;
struct ProgramFolders;
} // namespace quorvel::freedesktop

namespace quorvel::phosh {

// What the shell's thread provides. The two services are used on that thread alone, and not by the
// destruction of the parts.
struct ShellServices {
    platform::UIApplication& application;
    platform::HomeScreenShell& homeScreenShell;
    std::shared_ptr<platform::SystemLog> log; // not null; for any thread
    std::function<bool()> showsDetails;       // for any thread
    platform::CGFloat scale = 1;              // pixels per point
    platform::CGFloat screenHeight = 0;       // points; the agenda scrolls where it is higher
};

// One thread at a time may use it. Making it reads calendars, settings and pictures, and may take
// as long as a slow disk does; destroying it waits for the calendar that is being read. So both
// belong to a thread other than the shell's.
class AgendaParts {
public:
    // Presents the agenda once and paints it, so that its first frame needs nothing from the disk.
    // The error is a missing or damaged installation.
    static Result<std::unique_ptr<AgendaParts>> make(const ShellServices& shell,
                                                     const freedesktop::ProgramFolders& folders);
    ~AgendaParts();
    AgendaParts(const AgendaParts&) = delete;
    AgendaParts& operator=(const AgendaParts&) = delete;

    freedesktop::FreedesktopPlatform& platform() { return m_platform; }
    shells::AgendaHost& host() { return *m_host; }

private:
    AgendaParts(const ShellServices& shell, freedesktop::FreedesktopOptions options);
    Result<void> present(const ShellServices& shell, const freedesktop::ProgramFolders& folders);
    void paintOnce();

    freedesktop::FreedesktopPlatform m_platform;
    PrivateCalendarStores m_calendarStores;
    platform::Platform m_services;
    std::shared_ptr<const freedesktop::LoadedBundle> m_bundle;
    std::unique_ptr<shells::AgendaHost> m_host; // null until present()
};

} // namespace quorvel::phosh
