#include "app/help.h"

#include <algorithm>
#include <array>
#include <vector>

#include "freedesktop/language/messages.h"
#include "shells/headless/terminal_text.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

struct OptionText {
    std::string_view name;
    std::string_view usage;
    const char* text; // in English; lines after the first are indented when printed
};

struct CommandText {
    Command command;
    std::string_view name;
    std::string_view usage;
    const char* summary; // in English, as the description
    const char* description;
};

constexpr std::array<CommandText, 6> commandTexts{{
    {Command::agenda, "agenda", "quorvel agenda [--json] [OPTION]...",
     translatable("print the rows of the widget"),
     translatable(
         "Prints the rows as the widget shows them: when, what, and where if the settings\n"
         "show locations.\n")},
    {Command::snapshot, "snapshot",
     "quorvel snapshot -o FILE [--scale N] [--text-scale N]\n"
     "                        [--appearance NAME] [--background COLOR] [OPTION]...",
     translatable("draw the widget to a file"),
     translatable("Draws the widget, in full height, to a picture or a page.\n")},
    {Command::calendars, "calendars", "quorvel calendars [--refresh] [--json] [OPTION]...",
     translatable("list the calendars"),
     translatable(
         "Lists the calendars in the store's order, which of them the widget searches, and\n"
         "where each is: its file or folder, or the program that has it.\n")},
    {Command::show, "show",
     "quorvel show [--background COLOR] [--decorated] [OPTION]...\n"
     "       quorvel show --layer LAYER [--anchor EDGES] [--margin N[,N,N,N]]\n"
     "                    [--output NAME] [--background COLOR] [OPTION]...",
     translatable("open the widget in a window"),
     translatable(
         "Opens the widget in a window, which is always up to date. A row that is pulled to\n"
         "the right and released opens its event, and so does a double click; the second button\n"
         "opens a menu; rows below the edge are reached by scrolling; the header and places\n"
         "without a row move the window. A window that is open already comes to the front.\n"
         "With --layer it is a part of the desktop instead: without a frame, below or above all\n"
         "windows, at a place of its own.\n"
         "\n"
         "Keys:\n"
         "  Up, Down, Page Up, Page Down, Home, End\n"
         "                     choose a row\n"
         "  Enter, space       open the chosen row, as a pull does\n"
         "  Menu, Shift+F10    open the menu of the chosen row\n"
         "  F5, Ctrl+R         bring everything up to date\n"
         "  F10                open the menu of the window\n"
         "  Ctrl+?             show the keyboard shortcuts\n"
         "  Escape, Ctrl+W, Ctrl+Q\n"
         "                     close the window\n")},
    {Command::settings, "settings",
     "quorvel settings [--json] [OPTION]...\n"
     "       quorvel settings KEY [VALUE] [OPTION]...\n"
     "       quorvel settings --reset KEY [OPTION]...\n"
     "       quorvel settings --check [OPTION]...\n"
     "       quorvel settings calendars [--choose NAME...|--all|--follow-desktop]\n"
     "                                  [--json] [OPTION]...\n"
     "       quorvel settings calendars --subscribe ADDRESS [--title TITLE]\n"
     "                                  [--colour COLOUR]\n"
     "                                  [--user NAME [--password-stdin]] [OPTION]...\n"
     "       quorvel settings calendars --unsubscribe CALENDAR [OPTION]...",
     translatable("list, change and check the settings"),
     translatable(
         "Lists the settings with their values and which of them are set; prints or sets one;\n"
         "or checks the files for mistakes, which the widget ignores. A value is true or false\n"
         "(also yes, no, on, off), a number, the name of a colour or its code, or one of the\n"
         "choices that 'quorvel settings --json' lists. Nothing else in the files changes.\n"
         "With 'calendars', lists the calendars and whether each is shown, or chooses some.\n")},
    {Command::inspect, "inspect", "quorvel inspect [--do STEP]... [OPTION]...",
     translatable("run a script of host events and print everything as JSON"),
     translatable(
         "Loads the controller, runs the steps in order as a host would, and prints what\n"
         "happened at each, the settings, the records and the whole tree of views. Links\n"
         "and applications are recorded, not opened.\n"
         "\n"
         "Steps:\n"
         "  present            the widget is about to be shown, then shown\n"
         "  dismiss            the widget has been hidden\n"
         "  size               ask for the preferred size\n"
         "  layout:W,H         give the view that size, in points, and lay it out\n"
         "  scroll:Y           set the list's vertical offset, in points\n"
         "  pull:ROW:DX        pull that row (from 0) DX points to the right and release\n"
         "  drag:X,Y:DX,DY     a finger comes down at X,Y of the view, moves, rests and lifts\n"
         "  tap:X,Y            a finger comes down there and lifts; a controller for older\n"
         "                     hosts gets the place of the tap instead\n"
         "  full-view          controllers for older hosts: load the full view\n"
         "  placeholder        controllers for older hosts: load the placeholder\n"
         "  unload             controllers for older hosts: release the view\n"
         "  preferences:DIR    the preferences folder is DIR from here on\n"
         "  calendars:SOURCE   the calendars are SOURCE from here on\n"
         "  now:INSTANT        the clock shows that instant from here on\n")},
}};

struct CommandOption {
    OptionText option;
    std::vector<Command> commands;
};

const std::array<CommandOption, 24> commandOptions{{
    {{"--json", "--json", translatable("one JSON array instead of text")},
     {Command::agenda, Command::calendars, Command::settings}},
    {{"--output", "-o, --output FILE", translatable("the file to draw to: .png, .svg or .pdf")},
     {Command::snapshot}},
    {{"--scale", "--scale N", translatable("pixels a point (1)")}, {Command::snapshot}},
    {{"--text-scale", "--text-scale N",
      translatable("how much every font is enlarged, from 0.5 to 3 (1)")},
     {Command::snapshot}},
    {{"--appearance", "--appearance NAME",
      translatable("light, dark or high-contrast: the backdrop, and the colours of the\n"
                   "texts for which the settings choose none (dark)")},
     {Command::snapshot}},
    {{"--background", "--background COLOR",
      translatable("what lies behind the widget: #RGB, #RRGGBB, #RRGGBBAA, a common\n"
                   "name, or none (the backdrop of the appearance)")},
     {Command::snapshot, Command::show}},
    {{"--decorated", "--decorated", translatable("no effect: the window always has a header")},
     {Command::show}},
    {{"--layer", "--layer LAYER",
      translatable("background, bottom, top or overlay: a layer of the desktop instead\n"
                   "of a window")},
     {Command::show}},
    {{"--anchor", "--anchor EDGES",
      translatable("the edges of the output at which the layer lies: some of top, right,\n"
                   "bottom and left, with commas between (none: in the middle)")},
     {Command::show}},
    {{"--margin", "--margin N[,N,N,N]",
      translatable("points between the layer and the edges at which it lies: of all, or\n"
                   "of top,right,bottom,left (0)")},
     {Command::show}},
    {{"--output", "--output NAME",
      translatable("the output that shows the layer, such as DP-1 (the desktop's choice)")},
     {Command::show}},
    {{"--do", "--do STEP", translatable("a step of the script; may be given again")},
     {Command::inspect}},
    {{"--refresh", "--refresh",
      translatable("fetch the calendars on servers first, and report those that fail;\n"
                   "exit status 1 if there are any")},
     {Command::calendars}},
    {{"--reset", "--reset KEY",
      translatable("remove the setting from the file, so that it has its default; may be\n"
                   "given again")},
     {Command::settings}},
    {{"--check", "--check",
      translatable("name misspelt settings, wrong values and files that cannot be read,\n"
                   "with line and column; exit status 1 if there are any")},
     {Command::settings}},
    {{"--choose", "--choose NAME...",
      translatable("show these calendars, by their titles or identifiers, and no others")},
     {Command::settings}},
    {{"--all", "--all", translatable("show all calendars that there are now")},
     {Command::settings}},
    {{"--follow-desktop", "--follow-desktop",
      translatable("show the calendars that the calendar application has switched on")},
     {Command::settings}},
    {{"--subscribe", "--subscribe ADDRESS",
      translatable("add the calendar on a server that has this https: or webcal:\n"
                   "address, and fetch it; the widget fetches it every hour; '-': the\n"
                   "address is the first line of standard input")},
     {Command::settings}},
    {{"--title", "--title TITLE",
      translatable("with --subscribe: the title of the calendar (its own)")},
     {Command::settings}},
    {{"--colour", "--colour COLOUR",
      translatable("with --subscribe: the colour of the calendar, #RRGGBB or a common name\n"
                   "(its own)")},
     {Command::settings}},
    {{"--user", "--user NAME",
      translatable("with --subscribe: ask for the password of NAME, and store it in the\n"
                   "desktop's secret service")},
     {Command::settings}},
    {{"--password-stdin", "--password-stdin",
      translatable("with --user: read the password from standard input instead")},
     {Command::settings}},
    {{"--unsubscribe", "--unsubscribe CALENDAR",
      translatable("remove the calendar with this address, title or identifier, and its\n"
                   "copy")},
     {Command::settings}},
}};

constexpr std::array<OptionText, 17> commonOptions{{
    {"--calendars", "--calendars SOURCE",
     translatable("a .ics file, a folder of .ics files, a folder with one folder a\n"
                  "calendar, the https: or webcal: address of a calendar on a server,\n"
                  "'-' for standard input, 'eds:', the calendars of Evolution Data\n"
                  "Server, or 'thunderbird:', those of Thunderbird; may be given again\n"
                  "(all that there are: 'eds:', ~/.local/share/calendars, ~/.calendars,\n"
                  "'thunderbird:' and the subscriptions)")},
    {"--calendar-wait", "--calendar-wait FIRST[,LATER]",
     translatable("how many seconds Evolution Data Server may take for the first\n"
                  "presentation (3) and for each later one (0.5); only 'show' adds\n"
                  "what arrives later")},
    {"--preferences", "--preferences DIR",
     translatable("the folder of the settings' property lists\n"
                  "($XDG_CONFIG_HOME/quorvel/Preferences)")},
    {"--sample", "--sample",
     translatable("the calendars and settings that come with the program, dated\n"
                  "around now")},
    {"--controller", "--controller NAME",
     translatable("the bundle's class to show (its principal class)")},
    {"--width", "--width POINTS", translatable("the width that the widget is given (320)")},
    {"--now", "--now INSTANT",
     translatable("what every clock shows, for instance 2026-03-10T10:00:00Z; without\n"
                  "an offset it is the local time of the chosen zone; with 'show', the\n"
                  "clocks run from there")},
    {"--timezone", "--timezone ID",
     translatable("the time zone, for instance Europe/Berlin (the machine's)")},
    {"--locale", "--locale ID",
     translatable("language and region, for instance de_DE (the environment's)")},
    {"--font", "--font FAMILY", translatable("the font of the widget (the desktop's)")},
    {"--foundation-version", "--foundation-version N",
     translatable("from 1048 on the settings come from the preferences service instead\n"
                  "of their file (1047.25)")},
    {"--bundle", "--bundle DIR", translatable("the widget bundle (Quorvel.bundle)")},
    {"--log", "--log FILE",
     translatable("append the log to FILE instead of sending it to the system log")},
    {"--verbose", "--verbose", translatable("print the log on standard error too")},
    {"--no-cache", "--no-cache",
     translatable("read all calendars anew, without the index in\n"
                  "$XDG_CACHE_HOME/quorvel, and do not change that")},
    {"--help", "-h, --help", translatable("print this help, or that of a command")},
    {"--version", "-V, --version", translatable("print the version")},
}};

const CommandText& textOf(Command command) {
    return *std::ranges::find(commandTexts, command, &CommandText::command);
}

std::string optionHelp(const OptionText& option) {
    constexpr std::size_t textColumn = 26;
    std::string text = "  " + std::string(option.usage);
    if (text.size() + 2 > textColumn) { // the text begins on the next line
        text += '\n';
        text.append(textColumn, ' ');
    } else {
        text.append(textColumn - text.size(), ' ');
    }
    for (const char character : std::string_view(translated(option.text))) {
        text += character;
        if (character == '\n') {
            text.append(textColumn, ' ');
        }
    }
    return text + '\n';
}

std::string commonOptionsHelp() {
    std::string text;
    for (const OptionText& option : commonOptions) {
        text += optionHelp(option);
    }
    return text;
}

// The lines of `usage` after the first are indented for the English word before it.
std::string usageHelp(std::string_view usage) {
    constexpr std::string_view englishStart = "Usage: ";
    std::string text = filled(translated("Usage: {1}"), {""});
    const std::size_t start = headless::displayWidth(text);
    while (!usage.empty()) {
        const std::size_t end = std::min(usage.find('\n'), usage.size());
        text.append(usage.substr(0, end)) += '\n';
        usage.remove_prefix(std::min(end + 1, usage.size()));
        if (!usage.empty()) {
            usage.remove_prefix(englishStart.size());
            text.append(start, ' ');
        }
    }
    return text + '\n';
}

bool isOptionOf(Command command, const CommandOption& option) {
    return std::ranges::find(option.commands, command) != option.commands.end();
}

constexpr const char* exitStatusHelp = translatable(
    "Exit status: 0; 1 where something could not be read or written; 2 for wrong usage.\n");

} // namespace

std::string_view commandName(Command command) {
    return textOf(command).name;
}

bool commandTakesOption(Command command, std::string_view option) {
    bool isOfSome = false;
    for (const CommandOption& candidate : commandOptions) {
        if (candidate.option.name == option) {
            if (isOptionOf(command, candidate)) {
                return true;
            }
            isOfSome = true;
        }
    }
    return !isOfSome;
}

std::string programHelp() {
    std::string text = usageHelp("quorvel COMMAND [OPTION]...\n       quorvel help [COMMAND]");
    text += translated("Your upcoming events, as the agenda widget of a home screen shows them.\n"
                       "\n"
                       "Commands:\n");
    for (const CommandText& command : commandTexts) {
        std::string line = "  " + std::string(command.name);
        line.append(14 - line.size(), ' ');
        text += line + translated(command.summary) + '\n';
    }
    text += '\n';
    text += translated("Options of all commands, before or after the command:\n");
    text += commonOptionsHelp() + '\n';
    text += translated("'quorvel help COMMAND' and 'quorvel COMMAND --help' describe a command.\n");
    return text + translated(exitStatusHelp);
}

std::string commandHelp(Command command) {
    const CommandText& description = textOf(command);
    std::string text = usageHelp(description.usage);
    text += translated(description.description);
    text += '\n' + filled(translated("Options of {1}:\n"), {description.name});
    for (const CommandOption& option : commandOptions) {
        if (isOptionOf(command, option)) {
            text += optionHelp(option.option);
        }
    }
    text += '\n';
    text += translated("Options of all commands:\n");
    text += commonOptionsHelp() + '\n';
    return text + translated(exitStatusHelp);
}

} // namespace quorvel::app
