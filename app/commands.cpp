#include "app/commands.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "app/command_line.h"
#include "app/help.h"
#include "app/messages.h"
#include "app/program_setup.h"
#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/graphics/snapshot.h"
#include "shells/headless/agenda.h"
#include "shells/headless/calendar_list.h"
#include "shells/headless/inspect.h"
#include "shells/headless/snapshot.h"
#include "shells/headless/usage_error.h"
#include "shells/headless/widget_session.h"

namespace quorvel::app {

using freedesktop::CalendarSource;
using freedesktop::FreedesktopPlatform;
using freedesktop::LoadedBundle;
using headless::UsageError;
using headless::WidgetSession;
using platform::NSDate;

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

constexpr double standardWidth = 320; // points

// Everything that a command needs, made and checked before it does anything.
class Program {
public:
    explicit Program(const CommandLine& line)
        : m_line(line)
        , m_setup(setUp(line))
        , m_platform(m_setup.platform)
        , m_bundle(m_platform.loadBundle(m_setup.bundle))
        , m_session(*m_bundle, line.controller, m_platform.platform()) {}

    int run() {
        switch (m_line.command) {
        case Command::agenda:
            return agenda();
        case Command::snapshot:
            return snapshot();
        case Command::calendars:
            return calendars();
        case Command::inspect:
            return inspect();
        case Command::show:
            break;
        }
        return exitFailure;
    }

private:
    double width() const { return m_line.width.value_or(standardWidth); }

    // An empty list is "nothing planned" only where there was something to read.
    int statusOfCalendars() const {
        if (m_platform.hasReadableCalendars()) {
            return EXIT_SUCCESS;
        }
        complain(m_line.calendars.empty()
                     ? "there are no calendars: name them with --calendars, or try --sample"
                     : "not one calendar could be read: name others with --calendars");
        return exitFailure;
    }

    int agenda() {
        const headless::Agenda agenda = headless::readAgenda(m_session, width());
        print(m_line.json ? headless::agendaDocument(agenda, *m_setup.platform.timeZone)
                          : headless::agendaText(agenda));
        return statusOfCalendars();
    }

    int snapshot() {
        headless::WidgetPicture picture = headless::pictureOfWidget(m_session, width());
        const freedesktop::Snapshot snapshot{picture.size, m_line.scale.value_or(1),
                                             m_setup.backdrop, std::move(picture.paint)};
        if (const auto failure =
                freedesktop::writeSnapshot(m_line.output, snapshot, m_platform.textLines())) {
            throw std::runtime_error(*failure + ": name another file with -o, or draw less");
        }
        return statusOfCalendars();
    }

    int calendars() {
        const auto calendars = headless::readCalendars(m_session);
        print(m_line.json ? headless::calendarsDocument(calendars)
                          : headless::calendarsText(calendars, [this](std::string_view identifier) {
                                return m_platform.storeOfCalendar(identifier);
                            }));
        return statusOfCalendars();
    }

    int inspect() {
        class Changes : public headless::Surroundings {
        public:
            explicit Changes(FreedesktopPlatform& platform)
                : m_platform(platform) {}
            void setPreferencesFolder(const std::string& folder) override {
                m_platform.setPreferencesFolder(folder);
            }
            void setCalendars(const std::string& source) override {
                m_platform.setCalendars({CalendarSource::at(source)});
            }
            void setNow(NSDate date) override { m_platform.setNow(date); }

        private:
            FreedesktopPlatform& m_platform;
        };
        Changes changes(m_platform);
        print(headless::inspectDocument(m_session, changes, m_setup.steps, m_line.width));
        return EXIT_SUCCESS;
    }

    const CommandLine& m_line;
    ProgramSetup m_setup;
    FreedesktopPlatform m_platform;
    std::shared_ptr<const LoadedBundle> m_bundle;
    WidgetSession m_session;
};

int runCommand(int argc, const char* const* argv, const ShowCommand& show) {
    const CommandLine line = parseCommandLine(argc, argv);
    if (line.wantsHelp) {
        print(line.hasCommand ? commandHelp(line.command) : programHelp());
        return EXIT_SUCCESS;
    }
    if (line.wantsVersion) {
        print(versionText());
        return EXIT_SUCCESS;
    }
    return line.command == Command::show ? show(line) : Program(line).run();
}

} // namespace

int runProgram(int argc, const char* const* argv, const ShowCommand& show) {
    // A reader that goes away is an error of the write, not the end of the process.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return runCommand(argc, argv, show);
    } catch (const UsageError& error) {
        complain(error.what());
        return exitUsage;
    } catch (const freedesktop::UnknownClassError& error) {
        complain(error.what());
        return exitUsage;
    } catch (const std::bad_alloc&) {
        complain("there is not enough memory: ask for fewer events or a smaller picture");
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return exitFailure;
}

} // namespace quorvel::app
