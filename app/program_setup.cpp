#include "app/program_setup.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <variant>

#include "app/calendar_sources.h"
#include "app/layer_choice.h"
#include "app/messages.h"
#include "app/preferences_choice.h"
#include "app/sample.h"
#include "base/ascii_text.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/log/file_log.h"
#include "freedesktop/log/standard_error_log.h"
#include "freedesktop/log/syslog_log.h"
#include "freedesktop/user_environment.h"
#include "shells/headless/color_text.h"

namespace quorvel::app {

using freedesktop::CalendarProblem;
using freedesktop::CalendarSource;
using freedesktop::ClockFormat;
using freedesktop::Desktop;
using freedesktop::FreedesktopOptions;
using freedesktop::hostTimeZone;
using freedesktop::namedTimeZone;
using freedesktop::RenderingFactory;
using freedesktop::TimeZone;
using freedesktop::translated;
using platform::NSDate;
using platform::UIColor;
using shells::Appearance;
using shells::AppearanceKind;

namespace {

void reportCalendarProblem(const CalendarProblem& problem) {
    std::string place = problem.file;
    if (problem.line > 0) {
        place += ':' + std::to_string(problem.line);
    }
    printError({translated(problem.what), place, {}});
}

CommandResult<std::shared_ptr<const TimeZone>> timeZoneOf(const CommandLine& line) {
    if (!line.timeZone) {
        return hostTimeZone();
    }
    auto zone = namedTimeZone(*line.timeZone);
    if (!zone) {
        return usageFailure({filled(translated("unknown time zone '{1}'"), {*line.timeZone}),
                             {},
                             translated("give a name such as Europe/Berlin")});
    }
    return zone;
}

CommandResult<std::string> localeOf(const CommandLine& line) {
    if (!line.locale) {
        return freedesktop::userLocale();
    }
    const std::optional<std::string> locale = freedesktop::canonicalLocale(*line.locale);
    if (!locale) {
        return usageFailure({filled(translated("unknown locale '{1}'"), {*line.locale}),
                             {},
                             translated("give one such as de_DE")});
    }
    return *locale;
}

CommandResult<ClockFormat> clockFormatOf(const CommandLine& line, Desktop& desktop) {
    const ClockFormat format = line.locale ? ClockFormat::ofLocale : desktop.clockFormat();
    if (const auto failure = desktop.failure()) {
        return operationFailure(*failure);
    }
    return format;
}

CommandResult<void> checkFont(const CommandLine& line, const RenderingFactory& makeRendering) {
    if (!line.font) {
        return {};
    }
    const std::unique_ptr<freedesktop::Rendering> rendering = makeRendering({});
    const bool isInstalled = rendering->isFontInstalled(*line.font);
    if (const auto failure = rendering->failure()) {
        return operationFailure(*failure);
    }
    if (!isInstalled) {
        return usageFailure({filled(translated("there is no font '{1}'"), {*line.font}),
                             {},
                             translated("'fc-list : family' names those that are installed")});
    }
    return {};
}

// The value is absent where the command line has none.
CommandResult<std::optional<NSDate>> nowOf(const CommandLine& line, const TimeZone& zone) {
    if (!line.now) {
        return std::optional<NSDate>();
    }
    const std::optional<NSDate> now = freedesktop::parseInstant(*line.now, zone);
    if (!now) {
        return usageFailure({filled(translated("'{1}' is no instant"), {*line.now}),
                             {},
                             translated("write it like 2026-03-10T10:00:00Z")});
    }
    return now;
}

std::string sampleFolder(const std::string& dataFolder) {
    return dataFolder + "/sample";
}

CommandResult<std::vector<CalendarSource>> sampleSources(const std::string& dataFolder, NSDate now,
                                                         const TimeZone& zone) {
    Result<std::vector<SampleCalendar>> calendars =
        readSampleCalendars(sampleFolder(dataFolder) + "/calendars", now, zone);
    if (!calendars) {
        return operationFailure(calendars.error());
    }
    std::vector<CalendarSource> sources;
    for (SampleCalendar& calendar : *calendars) {
        sources.push_back(
            CalendarSource::inMemory(std::move(calendar.name), std::move(calendar.text)));
    }
    return sources;
}

CommandResult<std::vector<CalendarSource>> calendarsOf(const CommandLine& line,
                                                       const std::string& dataFolder, NSDate now,
                                                       const TimeZone& zone) {
    if (!line.calendars.empty()) {
        return namedSources(line.calendars);
    }
    if (line.sample) {
        return sampleSources(dataFolder, now, zone);
    }
    return freedesktop::usualCalendars();
}

// Empty: no index is stored.
std::string indexFolderOf(const CommandLine& line) {
    return line.noCache ? std::string() : freedesktop::userIndexFolder();
}

using Logs = std::vector<std::shared_ptr<platform::SystemLog>>;

CommandResult<std::shared_ptr<platform::SystemLog>> mainLogOf(const CommandLine& line) {
    if (!line.log) {
        return std::shared_ptr<platform::SystemLog>(std::make_shared<freedesktop::Syslog>());
    }
    auto log = freedesktop::FileLog::open(*line.log);
    if (!log) {
        return operationFailure({filled(translated("the log '{1}' cannot be written ({2})"),
                                        {*line.log, translated(log.error().what)}),
                                 {},
                                 translated("name another file with --log")});
    }
    return std::shared_ptr<platform::SystemLog>(*std::move(log));
}

CommandResult<Logs> logsOf(const CommandLine& line) {
    const CommandResult<std::shared_ptr<platform::SystemLog>> mainLog = mainLogOf(line);
    if (!mainLog) {
        return mainLog.error();
    }
    Logs logs{*mainLog};
    if (line.verbose) {
        logs.push_back(std::make_shared<freedesktop::StandardErrorLog>());
    }
    return logs;
}

CommandResult<std::vector<headless::Step>> stepsOf(const CommandLine& line, const TimeZone& zone) {
    std::vector<headless::Step> steps;
    for (const std::string& text : line.steps) {
        Result<headless::Step> step = headless::parseStep(text, zone);
        if (!step) {
            return usageFailure(step.error());
        }
        if (const auto* calendars = std::get_if<headless::CalendarsStep>(&step->action)) {
            const CommandResult<CalendarSource> source = namedSource(calendars->source);
            if (!source) {
                return source.error();
            }
        }
        steps.push_back(*std::move(step));
    }
    return steps;
}

CommandResult<Appearance> appearanceOf(const CommandLine& line) {
    const std::string name = line.appearance.value_or("dark");
    if (name == "dark") {
        return shells::standardAppearance(AppearanceKind::dark);
    }
    if (name == "light") {
        return shells::standardAppearance(AppearanceKind::light);
    }
    if (name == "high-contrast") {
        return shells::standardAppearance(AppearanceKind::highContrastDark);
    }
    return usageFailure({filled(translated("unknown appearance '{1}'"), {name}),
                         {},
                         translated("give light, dark or high-contrast")});
}

// The value is absent for a transparent backdrop.
CommandResult<std::optional<UIColor>> backdropOf(const CommandLine& line,
                                                 const Appearance& appearance) {
    if (!line.background) {
        return std::optional<UIColor>(line.command == Command::show
                                          ? shells::windowBackdrop(appearance)
                                          : appearance.backdrop);
    }
    if (*line.background == "none") {
        return std::optional<UIColor>();
    }
    const std::optional<UIColor> color = headless::parseColor(*line.background);
    if (!color) {
        return usageFailure({filled(translated("'{1}' is no colour"), {*line.background}),
                             {},
                             translated("write #RRGGBB, a common name, or none")});
    }
    return color;
}

CommandResult<void> checkOutputFolder(const std::filesystem::path& output) {
    const std::filesystem::path folder = output.has_parent_path() ? output.parent_path() : ".";
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(folder, error).type();
    if (type == std::filesystem::file_type::not_found) {
        return operationFailure({filled(translated("there is no folder '{1}'"), {folder.string()}),
                                 {},
                                 translated("make it, or name another file with -o")});
    }
    if (type != std::filesystem::file_type::directory && !error) {
        return operationFailure({filled(translated("'{1}' is no folder"), {folder.string()}),
                                 {},
                                 translated("name another file with -o")});
    }
    return {}; // what else may be wrong shows when the file is written
}

CommandResult<void> checkOutput(const CommandLine& line) {
    if (line.command != Command::snapshot) {
        return {};
    }
    const std::string extension =
        asciiLowerCase(std::filesystem::path(line.output).extension().string());
    if (extension != ".png" && extension != ".svg" && extension != ".pdf") {
        return usageFailure({filled(translated("'{1}' is no picture file"), {line.output}),
                             {},
                             translated("end its name in .png, .svg or .pdf")});
    }
    return checkOutputFolder(line.output);
}

// The default of the later waits is never longer than the first one.
freedesktop::DataServerWaits dataServerWaitsOf(const CommandLine& line) {
    freedesktop::DataServerWaits waits;
    waits.first = line.calendarWait.value_or(waits.first);
    waits.later = line.laterCalendarWait.value_or(std::min(waits.first, waits.later));
    return waits;
}

// The options that cannot be wrong.
FreedesktopOptions uncheckedOptions(const CommandLine& line,
                                    const freedesktop::ProgramFolders& folders) {
    FreedesktopOptions options;
    options.fontFamily = line.font;
    options.dataFolder = folders.data;
    options.dataServerModule = folders.dataServerModule;
    options.preferencesFolder = preferencesFolderOf(line);
    options.foundationVersionNumber =
        line.foundationVersion.value_or(options.foundationVersionNumber);
    options.calendarProblemHandler = reportCalendarProblem;
    options.preferencesProblemHandler = reportPreferencesProblem;
    options.calendarIndexFolder = indexFolderOf(line);
    options.subscriptions.cacheFolder = freedesktop::userSubscriptionFolder();
    options.subscriptions.refreshProgram = folders.refresh;
    if (line.calendars.empty() && !line.sample) {
        options.subscriptions.listFolder = options.preferencesFolder;
    }
    options.dataServerWaits = dataServerWaitsOf(line);
    options.linkProgram = freedesktop::userLinkProgram();
    options.scale = line.scale.value_or(1);
    options.textScale = line.textScale.value_or(1);
    options.followsTimeZone = !line.timeZone;
    options.followsLocale = !line.locale;
    options.clockRuns = line.command == Command::show;
    if (line.command == Command::show) {
        options.calendarWaits.emplace();
    }
    return options;
}

bool measuresText(Command command) {
    return command == Command::show || command == Command::snapshot || command == Command::inspect;
}

CommandResult<FreedesktopOptions> platformOptions(const CommandLine& line,
                                                  const freedesktop::ProgramFolders& folders,
                                                  std::shared_ptr<const TimeZone> zone,
                                                  const RenderingFactory& makeRendering,
                                                  std::shared_ptr<Desktop> desktop) {
    const CommandResult<std::string> locale = localeOf(line);
    if (!locale) {
        return locale.error();
    }
    const CommandResult<ClockFormat> clockFormat = clockFormatOf(line, *desktop);
    if (!clockFormat) {
        return clockFormat.error();
    }
    const CommandResult<std::optional<NSDate>> now = nowOf(line, *zone);
    if (!now) {
        return now.error();
    }
    if (const CommandResult<void> checked = checkFont(line, makeRendering); !checked) {
        return checked.error();
    }
    CommandResult<std::vector<CalendarSource>> calendars =
        calendarsOf(line, folders.data, now->value_or(freedesktop::SystemClock().now()), *zone);
    if (!calendars) {
        return calendars.error();
    }
    CommandResult<Logs> logs = logsOf(line);
    if (!logs) {
        return logs.error();
    }
    FreedesktopOptions options = uncheckedOptions(line, folders);
    options.timeZone = std::move(zone);
    options.locale = *locale;
    options.clockFormat = *clockFormat;
    options.desktop = std::move(desktop);
    options.now = *now;
    options.calendars = *std::move(calendars);
    options.logs = *std::move(logs);
    if (measuresText(line.command)) {
        options.makeRendering = makeRendering;
    }
    return options;
}

} // namespace

CommandResult<ProgramSetup> makeProgramSetup(const CommandLine& line,
                                             const RenderingFactory& makeRendering,
                                             std::shared_ptr<Desktop> desktop) {
    if (const CommandResult<void> checked = checkPreferencesFolder(line); !checked) {
        return checked.error();
    }
    const freedesktop::ProgramFolders& folders = freedesktop::programFolders();
    CommandResult<std::shared_ptr<const TimeZone>> zone = timeZoneOf(line);
    if (!zone) {
        return zone.error();
    }
    CommandResult<std::vector<headless::Step>> steps = stepsOf(line, **zone);
    if (!steps) {
        return steps.error();
    }
    const CommandResult<Appearance> appearance = appearanceOf(line);
    if (!appearance) {
        return appearance.error();
    }
    const CommandResult<std::optional<UIColor>> backdrop = backdropOf(line, *appearance);
    if (!backdrop) {
        return backdrop.error();
    }
    if (const CommandResult<void> checked = checkOutput(line); !checked) {
        return checked.error();
    }
    const CommandResult<std::optional<window::LayerOptions>> layer = layerOf(line);
    if (!layer) {
        return layer.error();
    }
    CommandResult<FreedesktopOptions> platform =
        platformOptions(line, folders, *std::move(zone), makeRendering, std::move(desktop));
    if (!platform) {
        return platform.error();
    }
    return ProgramSetup{*std::move(platform),
                        line.bundle.value_or(folders.bundle),
                        *std::move(steps),
                        *appearance,
                        *backdrop,
                        *layer,
                        folders.layerModule};
}

} // namespace quorvel::app
