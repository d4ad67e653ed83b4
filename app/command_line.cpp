#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <CLI/CLI.hpp>

#include "app/help.h"
#include "shells/headless/script.h"
#include "shells/headless/usage_error.h"

namespace quorvel::app {

using headless::UsageError;

namespace {

// Large enough for any display and any printer, small enough for every library below.
constexpr double greatestWidth = 100000;
constexpr double greatestScale = 64;
constexpr double longestWait = 600; // seconds

struct RawNumbers {
    std::string width;
    std::string calendarWait;
    std::string scale;
    std::string foundationVersion;
};

// Every option is known before and after the command; a later check decides which commands take it.
void declareOptions(CLI::App& app, CommandLine& line, RawNumbers& numbers, std::string& command) {
    const auto addValue = [&app](const std::string& names, auto& value) {
        app.add_option(names, value)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    };
    const auto addList = [&app](const std::string& name, std::vector<std::string>& values) {
        app.add_option(name, values)->allow_extra_args(false);
    };
    app.set_help_flag();
    app.allow_extras();
    app.add_option("command", command);
    app.add_flag("-h,--help", line.wantsHelp);
    app.add_flag("--version", line.wantsVersion);
    addList("--calendars", line.calendars);
    addValue("--calendar-wait", numbers.calendarWait);
    addValue("--preferences", line.preferences);
    app.add_flag("--sample", line.sample);
    addValue("--controller", line.controller);
    addValue("--width", numbers.width);
    addValue("--now", line.now);
    addValue("--timezone", line.timeZone);
    addValue("--locale", line.locale);
    addValue("--font", line.font);
    addValue("--foundation-version", numbers.foundationVersion);
    addValue("--bundle", line.bundle);
    addValue("--log", line.log);
    app.add_flag("--verbose", line.verbose);
    app.add_flag("--no-cache", line.noCache);
    app.add_flag("--json", line.json);
    addValue("-o,--output", line.output);
    addValue("--scale", numbers.scale);
    addValue("--background", line.background);
    app.add_flag("--decorated", line.decorated);
    addList("--do", line.steps);
}

[[noreturn]] void throwUsage(const std::string& what) {
    throw UsageError(what + ": see 'quorvel --help'");
}

// The library's messages name the option somewhere, behind its two dashes.
[[noreturn]] void throwParseError(const CLI::ParseError& error) {
    const std::string message = error.what();
    const std::size_t start = message.find('-');
    if (start == std::string::npos) {
        throwUsage(message.substr(0, message.find('\n')));
    }
    const std::size_t end = message.find_first_of(": =", start);
    const std::string name = message.substr(start, end - start);
    if (message.find("required") != std::string::npos) {
        throwUsage("the option " + name + " needs a value");
    }
    throwUsage("the option " + name + " takes no such value");
}

void parseArguments(CLI::App& app, int argc, const char* const* argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        throwParseError(error);
    }
    for (const std::string& extra : app.remaining()) {
        if (extra.starts_with('-')) {
            throwUsage("unknown option '" + extra + "'");
        }
        throwUsage("'" + extra + "' is one argument too many");
    }
}

Command commandNamed(const std::string& name) {
    for (const Command command : {Command::agenda, Command::snapshot, Command::calendars,
                                  Command::inspect, Command::show}) {
        if (commandName(command) == name) {
            return command;
        }
    }
    throwUsage("unknown command '" + name + "'");
}

void checkOptionsOfCommand(const CLI::App& app, Command command) {
    for (const CLI::Option* option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->count() > 0 && !commandTakesOption(command, name)) {
            throw UsageError("the option " + name + " is not one of " +
                             std::string(commandName(command)) + ": see 'quorvel " +
                             std::string(commandName(command)) + " --help'");
        }
    }
}

double parsePositiveNumber(const std::string& text, std::string_view what, double greatest) {
    const double number = headless::parseNumber(text, what);
    if (number <= 0 || number > greatest) {
        throw UsageError(std::string(what) + " cannot be '" + text +
                         "': give a number above 0 and up to " +
                         std::to_string(static_cast<long>(greatest)));
    }
    return number;
}

// Of the first presentation, and behind a comma of those that follow.
void readCalendarWaits(const std::string& text, CommandLine& line) {
    constexpr std::string_view what = "the wait for calendars";
    const std::size_t comma = text.find(',');
    line.calendarWait = parsePositiveNumber(text.substr(0, comma), what, longestWait);
    if (comma != std::string::npos) {
        line.laterCalendarWait = parsePositiveNumber(text.substr(comma + 1), what, longestWait);
    }
}

void readNumbers(const CLI::App& app, const RawNumbers& numbers, CommandLine& line) {
    if (app.count("--width") > 0) {
        line.width = parsePositiveNumber(numbers.width, "the width", greatestWidth);
    }
    if (app.count("--calendar-wait") > 0) {
        readCalendarWaits(numbers.calendarWait, line);
    }
    if (app.count("--scale") > 0) {
        line.scale = parsePositiveNumber(numbers.scale, "the scale", greatestScale);
    }
    if (app.count("--foundation-version") > 0) {
        line.foundationVersion =
            headless::parseNumber(numbers.foundationVersion, "the Foundation version");
    }
}

} // namespace

CommandLine parseCommandLine(int argc, const char* const* argv) {
    CommandLine line;
    RawNumbers numbers;
    std::string command;
    CLI::App app;
    declareOptions(app, line, numbers, command);
    parseArguments(app, argc, argv);
    line.hasCommand = app.count("command") > 0;
    if (line.hasCommand) {
        line.command = commandNamed(command);
    }
    if (line.wantsHelp || line.wantsVersion) {
        return line;
    }
    if (!line.hasCommand) {
        throwUsage("no command");
    }
    checkOptionsOfCommand(app, line.command);
    readNumbers(app, numbers, line);
    if (line.command == Command::snapshot && line.output.empty()) {
        throw UsageError("no file to draw to: name one with -o, ending in .png, .svg or .pdf");
    }
    return line;
}

} // namespace quorvel::app
