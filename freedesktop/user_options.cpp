#include "freedesktop/user_options.h"

#include <memory>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/desktop/linked_desktop.h"
#include "freedesktop/launch/desktop_launcher.h"
#include "freedesktop/session/desktop_settings.h"
#include "freedesktop/user_environment.h"

namespace quorvel::freedesktop {

FreedesktopOptions userOptions(const ProgramFolders& folders) {
    FreedesktopOptions options;
    options.timeZone = hostTimeZone();
    options.locale = userLocale();
    options.desktop = std::make_shared<LinkedDesktop>();
    options.makeLauncher = makeDesktopLauncher;
    options.clockFormat = options.desktop->clockFormat();
    options.textScale = desktopTextScale();
    options.dataFolder = folders.data;
    options.dataServerModule = folders.dataServerModule;
    options.preferencesFolder = userPreferencesFolder();
    options.calendars = usualCalendars();
    options.subscriptions = {userSubscriptionFolder(), options.preferencesFolder, folders.refresh};
    options.calendarIndexFolder = userIndexFolder();
    options.linkProgram = userLinkProgram();
    return options;
}

} // namespace quorvel::freedesktop
