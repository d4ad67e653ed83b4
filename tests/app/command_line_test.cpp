#include "app/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/help.h"

namespace quorvel::app {
namespace {

Result<CommandLine> resultOf(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "quorvel");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

CommandLine parsed(const std::vector<const char*>& arguments) {
    return resultOf(arguments).value();
}

std::string errorOf(const std::vector<const char*>& arguments) {
    const Result<CommandLine> result = resultOf(arguments);
    return result ? "no error" : message(result.error());
}

TEST(CommandLine, TakesOptionsOnBothSidesOfTheCommand) {
    for (const auto& line : {parsed({"--now", "2026-03-10", "agenda", "--json"}),
                             parsed({"--json", "agenda", "--now=2026-03-10"})}) {
        EXPECT_EQ(line.command, Command::agenda);
        EXPECT_EQ(line.now, "2026-03-10");
        EXPECT_TRUE(line.json);
    }
}

TEST(CommandLine, CollectsRepeatedOptions) {
    const auto line = parsed({"--calendars", "a", "inspect", "--do", "size", "--do", "layout:1,2",
                              "--calendars", "[b]"});
    EXPECT_EQ(line.calendars, (std::vector<std::string>{"a", "[b]"}));
    EXPECT_EQ(line.steps, (std::vector<std::string>{"size", "layout:1,2"}));
}

TEST(CommandLine, TakesTheLastOfARepeatedOption) {
    EXPECT_EQ(parsed({"agenda", "--width", "100", "--width", "200"}).width, 200);
}

TEST(CommandLine, TakesOneWaitOrTwo) {
    auto line = parsed({"show", "--calendar-wait", "2.5"});
    EXPECT_EQ(line.calendarWait, 2.5);
    EXPECT_FALSE(line.laterCalendarWait);
    line = parsed({"show", "--calendar-wait", "4,0.25"});
    EXPECT_EQ(line.calendarWait, 4);
    EXPECT_EQ(line.laterCalendarWait, 0.25);
    EXPECT_EQ(errorOf({"show", "--calendar-wait", "4,"}),
              "the wait for calendars cannot be '': give a decimal number");
    EXPECT_EQ(errorOf({"show", "--calendar-wait", "0,1"}),
              "the wait for calendars cannot be '0': give a number above 0 and up to 600");
    EXPECT_EQ(errorOf({"show", "--calendar-wait", "1,2,3"}),
              "the wait for calendars cannot be '2,3': give a decimal number");
}

TEST(CommandLine, LeavesMissingOptionsAbsent) {
    const auto line = parsed({"snapshot", "-o", "x.png"});
    EXPECT_EQ(line.output, "x.png");
    EXPECT_FALSE(line.width);
    EXPECT_FALSE(line.calendarWait);
    EXPECT_FALSE(line.scale);
    EXPECT_FALSE(line.foundationVersion);
    EXPECT_FALSE(line.background);
    EXPECT_FALSE(line.appearance);
    EXPECT_FALSE(line.textScale);
    EXPECT_FALSE(line.preferences);
    EXPECT_TRUE(line.controller.empty());
}

TEST(CommandLine, GivesHelpWithAndWithoutACommand) {
    EXPECT_TRUE(parsed({"--help"}).wantsHelp);
    EXPECT_TRUE(parsed({"snapshot", "-h"}).wantsHelp);
    EXPECT_TRUE(parsed({"--version"}).wantsVersion);
    EXPECT_TRUE(parsed({"-V"}).wantsVersion);
}

TEST(CommandLine, GivesHelpByTheWordHelp) {
    EXPECT_TRUE(parsed({"help"}).wantsHelp);
    EXPECT_FALSE(parsed({"help"}).hasCommand);
    EXPECT_FALSE(parsed({"help", "help"}).hasCommand);
    const CommandLine line = parsed({"help", "calendars"});
    EXPECT_TRUE(line.wantsHelp);
    EXPECT_TRUE(line.hasCommand);
    EXPECT_EQ(line.command, Command::calendars);
    EXPECT_EQ(parsed({"--sample", "help", "show"}).command, Command::show);
    EXPECT_EQ(errorOf({"help", "me"}), "unknown command 'me': see 'quorvel --help'");
    EXPECT_EQ(errorOf({"help", "show", "agenda"}),
              "'agenda' is one argument too many: see 'quorvel --help'");
}

TEST(CommandLine, SwitchesTakeNoValue) {
    for (const char* value : {"no", "yes", "true", "false", "1", "0", "maybe", "{}", ""}) {
        const std::string argument = "--json=" + std::string(value);
        EXPECT_EQ(errorOf({"agenda", argument.c_str()}),
                  "the option --json takes no value: see 'quorvel --help'");
    }
    for (const std::string name :
         {"--help", "--version", "--sample", "--verbose", "--no-cache", "--decorated"}) {
        EXPECT_EQ(errorOf({"show", (name + "=no").c_str()}),
                  "the option " + name + " takes no value: see 'quorvel --help'");
    }
}

TEST(CommandLine, ReportsWhatIsWrongInOneLine) {
    EXPECT_EQ(errorOf({}), "no command: see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agendas"}), "unknown command 'agendas': see 'quorvel --help'");
    EXPECT_EQ(errorOf({"shown"}), "unknown command 'shown': see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "--wide"}), "unknown option '--wide': see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "-x"}), "unknown option '-x': see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "inspect"}),
              "'inspect' is one argument too many: see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "--now"}), "the option --now needs a value: see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "--calendars"}),
              "the option --calendars needs a value: see 'quorvel --help'");
    EXPECT_EQ(errorOf({"agenda", "--scale", "2"}),
              "the option --scale is not one of agenda: see 'quorvel agenda --help'");
    EXPECT_EQ(errorOf({"show", "--appearance", "light"}),
              "the option --appearance is not one of show: see 'quorvel show --help'");
    EXPECT_EQ(errorOf({"snapshot", "--json", "-o", "x.png"}),
              "the option --json is not one of snapshot: see 'quorvel snapshot --help'");
    EXPECT_EQ(errorOf({"snapshot"}),
              "no file to draw to: name one with -o, ending in .png, .svg or .pdf");
    EXPECT_EQ(errorOf({"agenda", "--width", "wide"}),
              "the width cannot be 'wide': give a decimal number");
    EXPECT_EQ(errorOf({"agenda", "--width", "-5"}),
              "the width cannot be '-5': give a number above 0 and up to 100000");
    EXPECT_EQ(errorOf({"snapshot", "-o", "x.png", "--scale", "0"}),
              "the scale cannot be '0': give a number above 0 and up to 64");
    EXPECT_EQ(parsed({"snapshot", "-o", "x.png", "--text-scale", "0.5"}).textScale, 0.5);
    EXPECT_EQ(parsed({"snapshot", "-o", "x.png", "--text-scale", "3"}).textScale, 3);
    for (const char* wrong : {"0.49", "3.01", "-1", "0"}) {
        EXPECT_EQ(errorOf({"snapshot", "-o", "x.png", "--text-scale", wrong}),
                  "the text scale cannot be '" + std::string(wrong) +
                      "': give a number from 0.5 to 3");
    }
    EXPECT_EQ(errorOf({"agenda", "--width", "nan"}),
              "the width cannot be 'nan': give a decimal number");
    EXPECT_EQ(errorOf({"agenda", "--foundation-version", "new"}),
              "the Foundation version cannot be 'new': give a decimal number");
}

TEST(CommandLine, AnOptionMayMeanSomethingElseToAnotherCommand) {
    EXPECT_EQ(parsed({"snapshot", "--output", "x.png"}).output, "x.png");
    EXPECT_EQ(parsed({"show", "--layer", "top", "--output", "DP-1"}).output, "DP-1");
    EXPECT_EQ(errorOf({"agenda", "--output", "x.png"}),
              "the option --output is not one of agenda: see 'quorvel agenda --help'");
    EXPECT_EQ(errorOf({"snapshot", "-o", "x.png", "--layer", "top"}),
              "the option --layer is not one of snapshot: see 'quorvel snapshot --help'");
    EXPECT_NE(commandHelp(Command::show).find("--output NAME"), std::string::npos);
    EXPECT_EQ(commandHelp(Command::show).find("--output FILE"), std::string::npos);
}

TEST(CommandLine, PassesEmptyValuesOn) {
    EXPECT_EQ(parsed({"agenda", "--timezone", ""}).timeZone, "");
    EXPECT_EQ(parsed({"agenda", "--calendars", ""}).calendars, std::vector<std::string>{""});
}

TEST(Help, NamesEveryOptionOfACommand) {
    EXPECT_NE(commandHelp(Command::snapshot).find("--background"), std::string::npos);
    EXPECT_EQ(commandHelp(Command::agenda).find("--background"), std::string::npos);
    EXPECT_NE(commandHelp(Command::inspect).find("preferences:DIR"), std::string::npos);
    for (const Command command : {Command::agenda, Command::snapshot, Command::calendars,
                                  Command::inspect, Command::show}) {
        EXPECT_NE(commandHelp(command).find("--timezone ID"), std::string::npos);
        EXPECT_NE(programHelp().find(commandName(command)), std::string::npos);
    }
}

} // namespace
} // namespace quorvel::app
