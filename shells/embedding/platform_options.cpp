#include "shells/embedding/platform_options.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/dates/time_zone.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/log/syslog_log.h"
#include "freedesktop/named_calendars.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "freedesktop/user_options.h"
#include "shells/embedding/embedded_agenda.h"

namespace quorvel::embedding {

using freedesktop::CalendarProblem;
using freedesktop::CalendarSource;
using freedesktop::FreedesktopOptions;
using freedesktop::translated;

namespace {

// How long a presentation waits for the calendars, in seconds. What arrives later is presented
// then.
constexpr double firstWait = 0.3;

std::string describe(const CalendarProblem& problem) {
    const std::string line = problem.line > 0 ? ":" + std::to_string(problem.line) : "";
    return "QRV: " + problem.file + line + ": " + problem.what.english();
}

Result<void> chooseTimeZone(const std::string& name, FreedesktopOptions& options) {
    if (name.empty()) {
        return {};
    }
    options.timeZone = freedesktop::namedTimeZone(name);
    options.followsTimeZone = false;
    if (!options.timeZone) {
        return Error{filled(translated("unknown time zone '{1}'"), {name}),
                     {},
                     translated("give a name such as Europe/Berlin")};
    }
    return {};
}

Result<void> chooseLocale(const std::string& name, FreedesktopOptions& options) {
    if (name.empty()) {
        return {};
    }
    const std::optional<std::string> locale = freedesktop::canonicalLocale(name);
    if (!locale) {
        return Error{filled(translated("unknown locale '{1}'"), {name}),
                     {},
                     translated("give one such as de_DE")};
    }
    options.locale = *locale;
    options.followsLocale = false;
    options.clockFormat = freedesktop::ClockFormat::ofLocale;
    return {};
}

Result<void> chooseCalendars(const std::vector<std::string>& names, FreedesktopOptions& options) {
    if (names.empty()) {
        return {};
    }
    options.calendars.clear();
    options.subscriptions.listFolder.reset(); // the user's subscriptions were not named
    for (const std::string& name : names) {
        Result<CalendarSource> source = freedesktop::namedCalendars(name);
        if (!source) {
            return source.error();
        }
        options.calendars.push_back(*std::move(source));
    }
    return {};
}

void choosePreferences(const std::string& folder, FreedesktopOptions& options) {
    if (folder.empty()) {
        return;
    }
    options.preferencesFolder = folder;
    if (options.subscriptions.listFolder) {
        options.subscriptions.listFolder = folder;
    }
}

void chooseLog(std::shared_ptr<platform::SystemLog> log, FreedesktopOptions& options) {
    if (!log) {
        log = std::make_shared<freedesktop::Syslog>();
    }
    options.logs = {log};
    options.calendarProblemHandler = [log](const CalendarProblem& problem) {
        log->log(describe(problem));
    };
}

} // namespace

Result<FreedesktopOptions> platformOptions(const EmbeddedAgendaOptions& chosen,
                                           const freedesktop::ProgramFolders& folders) {
    FreedesktopOptions options = freedesktop::userOptions(folders);
    options.calendarWaits = {firstWait, 0};
    options.backgroundServerWaits = {firstWait, 0};
    options.clockRuns = !chosen.now;
    options.now = chosen.now;
    options.scale = chosen.scale;
    options.makeRendering = freedesktop::makeLinkedRendering;
    if (!chosen.fontFamily.empty()) {
        options.fontFamily = chosen.fontFamily;
    }
    for (const Result<void>& choice :
         {chooseTimeZone(chosen.timeZone, options), chooseLocale(chosen.locale, options),
          chooseCalendars(chosen.calendars, options)}) {
        if (!choice) {
            return choice.error();
        }
    }
    choosePreferences(chosen.preferencesFolder, options);
    chooseLog(chosen.log, options);
    return options;
}

} // namespace quorvel::embedding
