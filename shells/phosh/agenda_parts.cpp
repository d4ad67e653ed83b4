#include "shells/phosh/agenda_parts.h"

#include <chrono>
#include <string>
#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "freedesktop/user_options.h"
#include "platform/graphics_context.h"
#include "platform/screen.h"
#include "platform/system_log.h"

namespace quorvel::phosh {

using freedesktop::CalendarProblem;
using freedesktop::FreedesktopOptions;
using platform::Platform;

namespace {

// How long the first presentation waits for the calendars, in seconds: the user takes longer to
// turn to the page of the agenda. Later ones are made on the shell's thread and do not wait.
constexpr double firstWait = 1;

double frameTime() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::string describe(const CalendarProblem& problem) {
    const std::string line = problem.line > 0 ? ":" + std::to_string(problem.line) : "";
    return "QRV: " + problem.file + line + ": " + problem.what.english();
}

FreedesktopOptions optionsOf(const ShellServices& shell,
                             const freedesktop::ProgramFolders& folders) {
    FreedesktopOptions options = freedesktop::userOptions(folders);
    options.calendarWaits = {firstWait, 0};
    options.backgroundServerWaits = {firstWait, 0};
    options.clockRuns = true;
    options.scale = shell.scale;
    options.calendarProblemHandler = [log = shell.log](const CalendarProblem& problem) {
        log->log(describe(problem));
    };
    options.logs = {shell.log};
    options.makeRendering = freedesktop::makeLinkedRendering;
    return options;
}

Platform servicesOf(const Platform& platform, platform::CalendarStores& stores,
                    const ShellServices& shell) {
    return {platform.clock,
            platform.dateServices,
            stores,
            platform.preferences,
            platform.textMeasurer,
            platform.imageFiles,
            platform.graphicsContexts,
            platform.screen,
            platform.systemLog,
            platform.bundles,
            shell.application,
            shell.homeScreenShell};
}

} // namespace

Result<std::unique_ptr<AgendaParts>> AgendaParts::make(const ShellServices& shell,
                                                       const freedesktop::ProgramFolders& folders) {
    std::unique_ptr<AgendaParts> parts(new AgendaParts(shell, optionsOf(shell, folders)));
    if (Result<void> presented = parts->present(shell, folders); !presented) {
        return std::move(presented).error();
    }
    return parts;
}

AgendaParts::AgendaParts(const ShellServices& shell, FreedesktopOptions options)
    : m_platform(std::move(options))
    , m_calendarStores(m_platform.platform().calendarStores, shell.showsDetails)
    , m_services(servicesOf(m_platform.platform(), m_calendarStores, shell)) {
    m_platform.beginReadingCalendars(); // while the bundle is loaded
}

AgendaParts::~AgendaParts() = default;

Result<void> AgendaParts::present(const ShellServices& shell,
                                  const freedesktop::ProgramFolders& folders) {
    auto bundle = m_platform.loadBundle(folders.bundle);
    if (!bundle) {
        return std::move(bundle).error();
    }
    m_bundle = *std::move(bundle);
    if (!m_bundle->hasClass(m_bundle->principalClass())) {
        return Error{"the bundle has no principal class", folders.bundle, {}};
    }
    shells::AgendaHostOptions options;
    options.calendarState = [this, showsDetails = shell.showsDetails] {
        shells::CalendarState state{
            m_platform.hasReadableCalendars(), m_platform.areCalendarsLate(), {}};
        if (showsDetails()) { // their names are details
            state.unreadable = m_platform.unreadableCalendars();
        }
        return state;
    };
    options.frameTime = frameTime;
    m_host = std::make_unique<shells::AgendaHost>(*m_bundle, m_services, std::move(options));
    m_host->setGreatestHeight(shell.screenHeight);
    m_host->present();
    paintOnce();
    return {};
}

// Shapes the texts and rasterizes their glyphs, which are cached.
void AgendaParts::paintOnce() {
    const auto picture = m_services.graphicsContexts.beginImageContext(m_host->wantedSize(), false,
                                                                       m_services.screen.scale());
    if (picture) {
        m_host->window().render(picture->context());
    }
}

} // namespace quorvel::phosh
