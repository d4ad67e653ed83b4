#include "app/program_setup.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <variant>

#include "app/messages.h"
#include "app/sample.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/calendars/server/sources_service.h"
#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/log/file_log.h"
#include "freedesktop/log/standard_error_log.h"
#include "freedesktop/log/syslog_log.h"
#include "freedesktop/session/desktop_settings.h"
#include "freedesktop/text/fonts.h"
#include "shells/headless/color_text.h"
#include "shells/headless/usage_error.h"

namespace quorvel::app {

using freedesktop::CalendarProblem;
using freedesktop::CalendarSource;
using freedesktop::FreedesktopOptions;
using freedesktop::hostTimeZone;
using freedesktop::namedTimeZone;
using freedesktop::TimeZone;
using headless::UsageError;
using platform::NSDate;
using platform::UIColor;

namespace {

// A notification centre lies on a darkened picture; this is its tone, near black and a little blue.
constexpr UIColor standardBackdrop{0x17 / 255.0, 0x1A / 255.0, 0x21 / 255.0, 1};
// What is behind a window shines through a little.
constexpr UIColor windowBackdrop{standardBackdrop.red, standardBackdrop.green,
                                 standardBackdrop.blue, 0.9};

std::string_view environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

void reportCalendarProblem(const CalendarProblem& problem) {
    std::string place = problem.file;
    if (problem.line > 0) {
        place += ':' + std::to_string(problem.line);
    }
    complain(place + ": " + problem.what);
}

std::shared_ptr<const TimeZone> timeZoneOf(const CommandLine& line) {
    if (!line.timeZone) {
        return hostTimeZone();
    }
    auto zone = namedTimeZone(*line.timeZone);
    if (!zone) {
        throw UsageError("unknown time zone '" + *line.timeZone +
                         "': give a name such as Europe/Berlin");
    }
    return zone;
}

std::string localeOf(const CommandLine& line) {
    if (!line.locale) {
        return freedesktop::defaultLocale(environmentValue("LC_ALL"), environmentValue("LC_TIME"),
                                          environmentValue("LANG"));
    }
    const std::optional<std::string> locale = freedesktop::canonicalLocale(*line.locale);
    if (!locale) {
        throw UsageError("unknown locale '" + *line.locale + "': give one such as de_DE");
    }
    return *locale;
}

void checkFont(const CommandLine& line) {
    if (line.font && !freedesktop::isFontInstalled(*line.font)) {
        throw UsageError("there is no font '" + *line.font +
                         "': 'fc-list : family' names those that are installed");
    }
}

std::optional<NSDate> nowOf(const CommandLine& line, const TimeZone& zone) {
    if (!line.now) {
        return std::nullopt;
    }
    const std::optional<NSDate> now = freedesktop::parseInstant(*line.now, zone);
    if (!now) {
        throw UsageError("'" + *line.now + "' is no instant: write it like 2026-03-10T10:00:00Z");
    }
    return now;
}

CalendarSource checkedSource(const std::string& path) {
    CalendarSource source = CalendarSource::at(path);
    const auto problem = freedesktop::isDataServer(source)
                             ? freedesktop::eds::problemWithDataServer()
                             : freedesktop::problemWithSource(source);
    if (problem) {
        throw UsageError("the calendars '" + path + "' cannot be read (" + *problem +
                         "): name a .ics file or a folder of them");
    }
    return source;
}

// What the user has; not all of it need be there.
std::vector<CalendarSource> usualSources() {
    std::vector<CalendarSource> sources = freedesktop::defaultCalendarSources(
        environmentValue("XDG_DATA_HOME"), environmentValue("HOME"));
    if (!freedesktop::eds::problemWithDataServer()) {
        CalendarSource server = CalendarSource::at(std::string(freedesktop::dataServerSourceName));
        server.isOptional = true;
        sources.insert(sources.begin(), std::move(server));
    }
    return sources;
}

std::string sampleFolder(const std::string& dataFolder) {
    return dataFolder + "/sample";
}

std::vector<CalendarSource> calendarsOf(const CommandLine& line, const std::string& dataFolder,
                                        NSDate now, const TimeZone& zone) {
    std::vector<CalendarSource> sources;
    for (const std::string& path : line.calendars) {
        sources.push_back(checkedSource(path));
    }
    if (!sources.empty()) {
        return sources;
    }
    if (!line.sample) {
        return usualSources();
    }
    for (SampleCalendar& calendar :
         readSampleCalendars(sampleFolder(dataFolder) + "/calendars", now, zone)) {
        sources.push_back(
            CalendarSource::inMemory(std::move(calendar.name), std::move(calendar.text)));
    }
    return sources;
}

// An empty or relative value counts as unset, as everywhere on the desktop.
std::filesystem::path userFolder(const char* variable, const char* nameAtHome) {
    std::filesystem::path folder(environmentValue(variable));
    if (!folder.is_absolute()) {
        folder = std::filesystem::path(environmentValue("HOME")) / nameAtHome;
    }
    return folder / "quorvel";
}

std::string userPreferencesFolder() {
    return (userFolder("XDG_CONFIG_HOME", ".config") / "Preferences").string();
}

// Empty: no index is stored.
std::string indexFolderOf(const CommandLine& line) {
    const std::filesystem::path folder = userFolder("XDG_CACHE_HOME", ".cache");
    return line.noCache || !folder.is_absolute() ? std::string() : folder.string();
}

std::string preferencesFolderOf(const CommandLine& line, const std::string& dataFolder) {
    if (line.preferences) {
        return *line.preferences;
    }
    if (line.sample) {
        return sampleFolder(dataFolder) + "/Preferences";
    }
    return userPreferencesFolder();
}

std::vector<std::shared_ptr<platform::SystemLog>> logsOf(const CommandLine& line) {
    std::vector<std::shared_ptr<platform::SystemLog>> logs;
    if (line.log) {
        std::string reason;
        auto log = freedesktop::FileLog::open(*line.log, reason);
        if (!log) {
            throw std::runtime_error("the log '" + *line.log + "' cannot be written (" + reason +
                                     "): name another file with --log");
        }
        logs.push_back(std::move(log));
    } else {
        logs.push_back(std::make_shared<freedesktop::Syslog>());
    }
    if (line.verbose) {
        logs.push_back(std::make_shared<freedesktop::StandardErrorLog>());
    }
    return logs;
}

std::vector<headless::Step> stepsOf(const CommandLine& line, const TimeZone& zone) {
    std::vector<headless::Step> steps;
    for (const std::string& text : line.steps) {
        steps.push_back(headless::parseStep(text, zone));
        if (const auto* step = std::get_if<headless::CalendarsStep>(&steps.back().action)) {
            checkedSource(step->source);
        }
    }
    return steps;
}

// Absent: transparent.
std::optional<UIColor> backdropOf(const CommandLine& line) {
    if (!line.background) {
        return line.command == Command::show ? windowBackdrop : standardBackdrop;
    }
    if (*line.background == "none") {
        return std::nullopt;
    }
    const std::optional<UIColor> color = headless::parseColor(*line.background);
    if (!color) {
        throw UsageError("'" + *line.background +
                         "' is no colour: write #RRGGBB, a common name, or none");
    }
    return color;
}

void checkOutputName(const CommandLine& line) {
    std::string extension = std::filesystem::path(line.output).extension().string();
    std::ranges::transform(extension, extension.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
    });
    if (extension != ".png" && extension != ".svg" && extension != ".pdf") {
        throw UsageError("'" + line.output +
                         "' is no picture file: end its name in .png, .svg or .pdf");
    }
}

// A shorter first wait also shortens the default of the later ones.
freedesktop::DataServerWaits dataServerWaitsOf(const CommandLine& line) {
    freedesktop::DataServerWaits waits;
    waits.first = line.calendarWait.value_or(waits.first);
    waits.later = line.laterCalendarWait.value_or(std::min(waits.first, waits.later));
    return waits;
}

FreedesktopOptions platformOptions(const CommandLine& line, const std::string& dataFolder,
                                   std::shared_ptr<const TimeZone> zone) {
    FreedesktopOptions options;
    options.locale = localeOf(line);
    options.now = nowOf(line, *zone);
    checkFont(line);
    options.fontFamily = line.font;
    options.dataFolder = dataFolder;
    options.preferencesFolder = preferencesFolderOf(line, dataFolder);
    options.foundationVersionNumber =
        line.foundationVersion.value_or(options.foundationVersionNumber);
    const NSDate now = options.now.value_or(freedesktop::SystemClock().now());
    options.calendars = calendarsOf(line, dataFolder, now, *zone);
    options.calendarProblemHandler = reportCalendarProblem;
    options.calendarIndexFolder = indexFolderOf(line);
    options.dataServerWaits = dataServerWaitsOf(line);
    options.scale = line.scale.value_or(1);
    options.followsTimeZone = !line.timeZone;
    options.followsLocale = !line.locale;
    options.clockFormat =
        line.locale ? freedesktop::ClockFormat::ofLocale : freedesktop::desktopClockFormat();
    options.measuresText = line.command != Command::agenda && line.command != Command::calendars;
    options.clockRuns = line.command == Command::show;
    options.waitsForCalendars = line.command != Command::show;
    options.timeZone = std::move(zone);
    return options;
}

} // namespace

ProgramSetup setUp(const CommandLine& line) {
    const freedesktop::ProgramFolders folders = freedesktop::programFolders();
    const std::shared_ptr<const TimeZone> zone = timeZoneOf(line);
    ProgramSetup setup;
    setup.steps = stepsOf(line, *zone);
    setup.backdrop = backdropOf(line);
    if (line.command == Command::snapshot) {
        checkOutputName(line);
    }
    setup.platform = platformOptions(line, folders.data, zone);
    setup.platform.logs = logsOf(line);
    setup.platform.dataServerModule = folders.dataServerModule;
    setup.bundle = line.bundle.value_or(folders.bundle);
    return setup;
}

} // namespace quorvel::app
