#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "app/help.h"
#include "app/settings_command.h"
#include "base/ascii_text.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/text/text_lines.h"
#include "shells/headless/script.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

// Large enough for any display and any printer, small enough for every library below.
constexpr double greatestWidth = 100000;
constexpr double greatestScale = 64;
constexpr double longestWait = 600; // seconds
constexpr std::string_view helpWord = "help";
constexpr std::string_view settingsWord = "settings";

// As written on the command line.
struct NumberTexts {
    std::string width;
    std::string calendarWait;
    std::string scale;
    std::string textScale;
    std::string foundationVersion;
};

// The arguments that are no options.
struct CommandWords {
    std::string command;
    std::vector<std::string> others; // only of `help` and `settings`
};

// The library accepts every option with every command; checkOptionsOfCommand() then refuses those
// that the command does not take.
void declareOptions(CLI::App& app, CommandLine& line, NumberTexts& numbers, CommandWords& words) {
    const auto addValue = [&app](const std::string& names, auto& value) {
        app.add_option(names, value)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    };
    const auto addList = [&app](const std::string& name, std::vector<std::string>& values) {
        app.add_option(name, values)->allow_extra_args(false);
    };
    app.set_help_flag();
    app.allow_extras();
    app.add_option("command", words.command);
    app.add_option("others", words.others);
    app.add_flag("-h,--help", line.wantsHelp);
    app.add_flag("-V,--version", line.wantsVersion);
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
    addValue("--text-scale", numbers.textScale);
    addValue("--appearance", line.appearance);
    addValue("--background", line.background);
    app.add_flag("--decorated", line.decorated);
    addValue("--layer", line.layer);
    addValue("--anchor", line.anchor);
    addValue("--margin", line.margin);
    addList("--do", line.steps);
    app.add_flag("--refresh", line.refreshes);
    addList("--reset", line.resetSettings);
    app.add_flag("--check", line.checksSettings);
    app.add_option("--choose", line.chosenCalendars);
    app.add_flag("--all", line.choosesAll);
    app.add_flag("--follow-desktop", line.followsDesktop);
    addValue("--subscribe", line.subscribe);
    addValue("--unsubscribe", line.unsubscribe);
    addValue("--title", line.title);
    addValue("--colour", line.colour);
    addValue("--user", line.user);
    app.add_flag("--password-stdin", line.readsPassword);
}

Error usageError(const std::string& what) {
    return {what, {}, translated("see 'quorvel --help'")};
}

// The library's messages contain the option's name with its two dashes.
Error parseError(const CLI::ParseError& error) {
    const std::string message = error.what();
    const std::size_t start = message.find('-');
    if (start == std::string::npos) {
        return usageError(message.substr(0, message.find('\n')));
    }
    const std::size_t end = message.find_first_of(": =", start);
    const std::string name = message.substr(start, end - start);
    if (message.find("required") != std::string::npos) {
        return usageError(filled(translated("the option {1} needs a value"), {name}));
    }
    return usageError(filled(translated("the option {1} takes no such value"), {name}));
}

// The library would read "--json=no" as a switch that is off.
Result<void> checkSwitches(const CLI::App& app, int argc, const char* const* argv) {
    for (const std::string_view argument :
         std::vector<std::string_view>(argv + std::min(argc, 1), argv + argc)) {
        const std::size_t equalSign = argument.find('=');
        if (equalSign == std::string_view::npos || !argument.starts_with("--")) {
            continue;
        }
        const std::string name(argument.substr(0, equalSign));
        const CLI::Option* option = app.get_option_no_throw(name);
        if (option != nullptr && option->get_expected_max() == 0) {
            return usageError(filled(translated("the option {1} takes no value"), {name}));
        }
    }
    return {};
}

// The library takes a negative number for an option, but it may be the value of a setting.
bool isNegativeNumber(std::string_view text) {
    return text.size() > 1 && text[0] == '-' && (isAsciiDigit(text[1]) || text[1] == '.');
}

Result<void> parseArguments(CLI::App& app, int argc, const char* const* argv, CommandWords& words) {
    if (const Result<void> checked = checkSwitches(app, argc, argv); !checked) {
        return checked;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return parseError(error);
    }
    for (const std::string& extra : app.remaining()) {
        if (words.command == settingsWord && isNegativeNumber(extra)) {
            words.others.push_back(extra);
            continue;
        }
        if (extra.starts_with('-')) {
            return usageError(filled(translated("unknown option '{1}'"), {extra}));
        }
        return usageError(filled(translated("'{1}' is one argument too many"), {extra}));
    }
    return {};
}

Result<Command> commandNamed(const std::string& name) {
    for (const Command command : {Command::agenda, Command::snapshot, Command::calendars,
                                  Command::inspect, Command::show, Command::settings}) {
        if (commandName(command) == name) {
            return command;
        }
    }
    return usageError(filled(translated("unknown command '{1}'"), {name}));
}

Error unknownOption(const std::string& option, const std::string& command) {
    return {filled(translated("the option {1} is not one of {2}"), {option, command}),
            {},
            filled(translated("see 'quorvel {1} --help'"), {command})};
}

Result<void> checkOptionsOfCommand(const CLI::App& app, Command command) {
    for (const CLI::Option* option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->count() > 0 && !commandTakesOption(command, name)) {
            return unknownOption(name, std::string(commandName(command)));
        }
    }
    return {};
}

// `problem` has {1} for the text, and is translated here.
Result<double> parsePositiveNumber(const std::string& text, const char* problem, double greatest) {
    const std::string what = filled(translated(problem), {text});
    const Result<double> number = headless::parseNumber(text, what);
    if (number && (*number <= 0 || *number > greatest)) {
        return Error{what,
                     {},
                     filled(translated("give a number above 0 and up to {1}"),
                            {std::to_string(static_cast<long>(greatest))})};
    }
    return number;
}

Result<double> parseTextScale(const std::string& text) {
    const std::string what = filled(translated("the text scale cannot be '{1}'"), {text});
    const Result<double> number = headless::parseNumber(text, what);
    if (number &&
        (*number < freedesktop::leastTextScale || *number > freedesktop::greatestTextScale)) {
        return Error{what, {}, translated("give a number from 0.5 to 3")};
    }
    return number;
}

// Stores the number where there is one.
Result<void> storeNumber(const Result<double>& number, std::optional<double>& target) {
    if (!number) {
        return number.error();
    }
    target = *number;
    return {};
}

// For the first presentation and, after a comma, for the later ones.
Result<void> parseCalendarWaits(const std::string& text, CommandLine& line) {
    constexpr const char* problem = translatable("the wait for calendars cannot be '{1}'");
    const std::size_t comma = text.find(',');
    const Result<void> first = storeNumber(
        parsePositiveNumber(text.substr(0, comma), problem, longestWait), line.calendarWait);
    if (!first || comma == std::string::npos) {
        return first;
    }
    return storeNumber(parsePositiveNumber(text.substr(comma + 1), problem, longestWait),
                       line.laterCalendarWait);
}

Result<void> parseNumbers(const CLI::App& app, const NumberTexts& texts, CommandLine& line) {
    Result<void> result;
    if (app.count("--width") > 0) {
        constexpr const char* problem = translatable("the width cannot be '{1}'");
        result = storeNumber(parsePositiveNumber(texts.width, problem, greatestWidth), line.width);
    }
    if (result && app.count("--calendar-wait") > 0) {
        result = parseCalendarWaits(texts.calendarWait, line);
    }
    if (result && app.count("--scale") > 0) {
        constexpr const char* problem = translatable("the scale cannot be '{1}'");
        result = storeNumber(parsePositiveNumber(texts.scale, problem, greatestScale), line.scale);
    }
    if (result && app.count("--text-scale") > 0) {
        result = storeNumber(parseTextScale(texts.textScale), line.textScale);
    }
    if (result && app.count("--foundation-version") > 0) {
        const std::string problem =
            filled(translated("the Foundation version cannot be '{1}'"), {texts.foundationVersion});
        result = storeNumber(headless::parseNumber(texts.foundationVersion, problem),
                             line.foundationVersion);
    }
    return result;
}

// `help` is no command of its own: "help agenda" means "agenda --help".
Result<void> readCommandWords(const CLI::App& app, CommandWords words, CommandLine& line) {
    if (words.command == helpWord) {
        line.wantsHelp = true;
        words.command.clear();
        if (!words.others.empty() && words.others.front() != helpWord) {
            words.command = words.others.front();
        }
        words.others.erase(words.others.begin(),
                           words.others.begin() + (words.others.empty() ? 0 : 1));
    } else if (words.command == settingsWord) {
        line.settingsWords = std::exchange(words.others, {});
    }
    if (!words.others.empty()) {
        return usageError(
            filled(translated("'{1}' is one argument too many"), {words.others.front()}));
    }
    line.hasCommand = line.wantsHelp ? !words.command.empty() : app.count("command") > 0;
    if (!line.hasCommand) {
        return {};
    }
    const Result<Command> named = commandNamed(words.command);
    if (!named) {
        return named.error();
    }
    line.command = *named;
    return {};
}

// What can only be checked once the command is known.
Result<void> checkCommand(const CLI::App& app, const NumberTexts& numbers, CommandLine& line) {
    if (!line.hasCommand) {
        return usageError(translated("no command"));
    }
    if (const Result<void> checked = checkOptionsOfCommand(app, line.command); !checked) {
        return checked;
    }
    if (const Result<void> parsed = parseNumbers(app, numbers, line); !parsed) {
        return parsed;
    }
    if (line.command == Command::settings) {
        return checkSettingsLine(line);
    }
    if (line.command == Command::snapshot && line.output.empty()) {
        return Error{translated("no file to draw to"),
                     {},
                     translated("name one with -o, ending in .png, .svg or .pdf")};
    }
    return {};
}

} // namespace

Result<CommandLine> parseCommandLine(int argc, const char* const* argv) {
    CommandLine line;
    NumberTexts numbers;
    CommandWords words;
    CLI::App app;
    declareOptions(app, line, numbers, words);
    if (const Result<void> parsed = parseArguments(app, argc, argv, words); !parsed) {
        return parsed.error();
    }
    if (const Result<void> read = readCommandWords(app, words, line); !read) {
        return read.error();
    }
    if (line.wantsHelp || line.wantsVersion) {
        return line;
    }
    if (const Result<void> checked = checkCommand(app, numbers, line); !checked) {
        return checked.error();
    }
    return line;
}

} // namespace quorvel::app
