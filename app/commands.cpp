#include "app/commands.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "app/calendar_sources.h"
#include "app/command_line.h"
#include "app/copy_refresh.h"
#include "app/help.h"
#include "app/messages.h"
#include "app/program_bundle.h"
#include "app/program_setup.h"
#include "app/settings_calendars.h"
#include "app/settings_command.h"
#include "app/subscription_command.h"
#include "app/version_text.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/graphics/snapshot.h"
#include "freedesktop/language/messages.h"
#include "shells/headless/agenda.h"
#include "shells/headless/calendar_list.h"
#include "shells/headless/inspect.h"
#include "shells/headless/snapshot.h"
#include "shells/headless/widget_session.h"
#include "shells/widget/notices.h"

namespace quorvel::app {

using freedesktop::CalendarSource;
using freedesktop::FreedesktopPlatform;
using freedesktop::Rendering;
using freedesktop::Snapshot;
using freedesktop::translated;
using headless::WidgetSession;
using platform::NSDate;

namespace {

constexpr double standardWidth = 320; // points

// What the user can do about a picture that cannot be written.
std::string snapshotHint(const std::string& path, const Snapshot& snapshot, Rendering& rendering) {
    if (rendering.fitsInto(path, snapshot)) {
        return translated("name another file with -o");
    }
    return rendering.fitsInto("any.pdf", snapshot)
               ? translated("draw a .pdf instead; the settings maxEventsToDisplay and "
                            "limitMaxHeight, and --scale, make it smaller")
               : translated("the settings maxEventsToDisplay and limitMaxHeight, and --scale, "
                            "make it smaller");
}

CommandResult<void> printOutput(const std::string& text) {
    if (const Result<void> printed = print(text); !printed) {
        return operationFailure(printed.error());
    }
    return {};
}

class PlatformSurroundings final : public headless::Surroundings {
public:
    explicit PlatformSurroundings(FreedesktopPlatform& platform)
        : m_platform(platform) {}
    void setPreferencesFolder(const std::string& folder) override {
        m_platform.setPreferencesFolder(folder);
    }
    void setCalendars(const std::string& source) override {
        if (const auto named = namedSource(source)) { // checked before
            m_platform.setCalendars({*named});
        }
    }
    void setNow(NSDate date) override { m_platform.setNow(date); }

private:
    FreedesktopPlatform& m_platform;
};

// A command that needs no display, on a widget that has been created for it.
class HeadlessCommand {
public:
    // The arguments outlive the command.
    HeadlessCommand(const CommandLine& line, const ProgramSetup& setup,
                    FreedesktopPlatform& platform, const ProgramBundle& bundle)
        : m_line(line)
        , m_setup(setup)
        , m_platform(platform)
        , m_session(*bundle.bundle, bundle.controllerName, platform.platform()) {}

    CommandResult<void> run() {
        switch (m_line.command) {
        case Command::agenda:
            return printAgenda();
        case Command::snapshot:
            return writeSnapshot();
        case Command::calendars:
            return printCalendars();
        case Command::inspect:
            return inspect();
        case Command::settings:
            return runSettingsCalendars(
                m_line, m_setup.platform.preferencesFolder, headless::readCalendars(m_session),
                [this](auto name) { return m_platform.storeOfCalendar(name); });
        case Command::show:
            break;
        }
        return operationFailure({translated("the command needs a window"), {}, {}});
    }

private:
    double width() const { return m_line.width.value_or(standardWidth); }

    // An empty list means "nothing planned" only where there was a calendar to read.
    CommandResult<void> checkCalendars() const {
        if (m_platform.hasReadableCalendars()) {
            return {};
        }
        if (m_line.calendars.empty()) {
            return operationFailure({translated("there are no calendars"),
                                     {},
                                     translated("name them with --calendars, or try --sample")});
        }
        return operationFailure({translated("not one calendar could be read"),
                                 {},
                                 translated("name others with --calendars")});
    }

    CommandResult<void> printWithCalendarCheck(const std::string& text) const {
        const CommandResult<void> printed = printOutput(text);
        return printed ? checkCalendars() : printed;
    }

    CommandResult<void> printAgenda() {
        const headless::Agenda agenda = headless::readAgenda(m_session, width());
        return printWithCalendarCheck(m_line.json
                                          ? headless::agendaDocument(agenda, *m_platform.timeZone())
                                          : headless::agendaText(agenda));
    }

    CommandResult<void> writeSnapshot() {
        headless::WidgetPicture picture =
            headless::pictureOfWidget(m_session, width(), m_setup.appearance, [this] {
                return shells::CalendarState{m_platform.hasReadableCalendars(), false,
                                             m_platform.unreadableCalendars()};
            });
        Rendering& rendering = m_platform.rendering();
        if (const auto failure = rendering.failure()) {
            return operationFailure(*failure);
        }
        const Snapshot snapshot{picture.size, m_line.scale.value_or(1), m_setup.backdrop,
                                std::move(picture.paint)};
        const Result<void> written = rendering.writeSnapshot(m_line.output, snapshot);
        if (!written) {
            return operationFailure(
                {written.error().what, {}, snapshotHint(m_line.output, snapshot, rendering)});
        }
        warnWithoutFonts();
        return checkCalendars();
    }

    // No failure: the picture has been written, with boxes in place of letters.
    void warnWithoutFonts() const {
        if (!m_platform.rendering().areFontsInstalled()) {
            printError({translated("there are no fonts, so that the texts cannot be read"),
                        {},
                        translated("install one, such as DejaVu Sans (on Debian the package "
                                   "fonts-dejavu-core)")});
        }
    }

    CommandResult<void> printCalendars() {
        const auto calendars = headless::readCalendars(m_session);
        const auto storeOf = [this](std::string_view identifier) {
            return m_platform.storeOfCalendar(identifier);
        };
        return printWithCalendarCheck(m_line.json ? headless::calendarsDocument(calendars)
                                                  : headless::calendarsText(calendars, storeOf));
    }

    CommandResult<void> inspect() {
        PlatformSurroundings surroundings(m_platform);
        const Result<std::string> document =
            headless::inspectDocument(m_session, surroundings, m_setup.steps, m_line.width);
        if (const auto failure = m_platform.rendering().failure()) {
            return operationFailure(*failure);
        }
        return document ? printOutput(*document)
                        : CommandResult<void>(usageFailure(document.error()));
    }

    const CommandLine& m_line;
    const ProgramSetup& m_setup;
    FreedesktopPlatform& m_platform;
    WidgetSession m_session;
};

CommandResult<void> runHeadlessCommand(const CommandLine& line, const ProgramParts& parts) {
    const CommandResult<ProgramSetup> setup =
        makeProgramSetup(line, parts.makeRendering, parts.desktop);
    if (!setup) {
        return setup.error();
    }
    if (const CommandResult<void> refreshed = refreshCopies(line, setup->platform); !refreshed) {
        return refreshed;
    }
    FreedesktopPlatform platform(setup->platform);
    if (line.command == Command::snapshot) {
        platform.rendering().prepare();
    }
    const CommandResult<ProgramBundle> bundle =
        loadProgramBundle(platform, setup->bundleFolder, line.controller);
    if (!bundle) {
        return bundle.error();
    }
    const CommandResult<void> result = HeadlessCommand(line, *setup, platform, *bundle).run();
    return result && line.refreshes ? checkRefreshed(setup->platform) : result;
}

CommandResult<void> runCommand(int argc, const char* const* argv, const ProgramParts& parts) {
    const Result<CommandLine> line = parseCommandLine(argc, argv);
    if (!line) {
        return usageFailure(line.error());
    }
    if (line->wantsHelp) {
        return printOutput(line->hasCommand ? commandHelp(line->command) : programHelp());
    }
    if (line->wantsVersion) {
        return printOutput(std::string(versionText));
    }
    if (isAboutSubscriptions(*line)) {
        return runSubscriptionCommand(*line);
    }
    if (line->command == Command::settings && !isAboutCalendars(*line)) {
        return runSettingsCommand(*line, parts.makeRendering);
    }
    return line->command == Command::show ? parts.show(*line) : runHeadlessCommand(*line, parts);
}

} // namespace

int runProgram(int argc, const char* const* argv, const ProgramParts& parts) {
    // A write to a pipe whose reader has closed it then fails instead of ending the process.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const CommandResult<void> result = runCommand(argc, argv, parts);
        if (result) {
            return EXIT_SUCCESS;
        }
        printError(result.error().error);
        return result.error().exitStatus;
    } catch (const std::bad_alloc&) {
        printError({translated("there is not enough memory"),
                    {},
                    translated("ask for fewer events or a smaller picture")});
    } catch (const std::exception& error) {
        printError({error.what(), {}, {}});
    }
    return EXIT_FAILURE;
}

} // namespace quorvel::app
