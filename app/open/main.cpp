// The handler of the links that the widget opens: shows the event or the day in the user's calendar
// application.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/launch/activation_token.h"
#include "freedesktop/launch/calendar_opener.h"
#include "freedesktop/launch/notification.h"
#include "freedesktop/launch/openable_link.h"
#include "freedesktop/log/library_messages.h"
#include "freedesktop/plain_text/terminal_line.h"

namespace {

using namespace quorvel::freedesktop;
using quorvel::filled;

constexpr int exitUsage = 2;

std::string help() {
    std::string text = translated("Usage: quorvel-open LINK");
    text += "\n\n";
    text += translated("Opens a link of the agenda in your calendar application:\n"
                       "  x-apple-calevent://CALENDAR/UID?o=SECONDS   an event\n"
                       "  fantastical2://show?date=YEAR-MONTH-DAY     a day\n");
    text += '\n';
    text += translated("Options:\n"
                       "  -h, --help    print this help\n"
                       "  --version     print the version\n");
    text += '\n';
    text += translated("Exit status: 0; 1 where nothing could open it; 2 for wrong usage.\n");
    return text;
}

// Returns the status.
int reportError(const std::string& what, int status) {
    std::fprintf(stderr, "quorvel-open: %s\n", terminalLine(what).c_str());
    return status;
}

int reportUsageError(const std::string& what) {
    return reportError(what + ": " + translated("see 'quorvel-open --help'"), exitUsage);
}

int openLink(std::string_view link, const std::string& activationToken) {
    if (const auto checked = checkLink(link); !checked) {
        const std::string reason = translated(checked.error().what);
        return reportUsageError(filled(translated("the link cannot be opened ({1})"), {reason}));
    }
    const auto parsed = parseCalendarLink(link);
    if (!parsed) {
        return reportUsageError(translated("the link names neither an event nor a day"));
    }
    if (const auto opened = openInCalendarApplication(*parsed, activationToken); !opened) {
        const std::string problem = message(opened.error());
        const bool isEvent = std::holds_alternative<EventLink>(*parsed);
        notifyUser(isEvent ? translated("The event cannot be shown")
                           : translated("The day cannot be shown"),
                   asSentence(problem));
        return reportError(problem, EXIT_FAILURE);
    }
    return EXIT_SUCCESS;
}

int run(int argc, char** argv, const std::string& activationToken) {
    if (argc != 2) {
        return reportUsageError(argc < 2 ? translated("no link")
                                         : translated("one link at a time"));
    }
    const std::string_view argument = argv[1];
    if (argument == "-h" || argument == "--help") {
        std::fputs(help().c_str(), stdout);
        return EXIT_SUCCESS;
    }
    if (argument == "--version") {
        std::puts("quorvel-open " QUORVEL_VERSION);
        return EXIT_SUCCESS;
    }
    if (argument.starts_with('-')) {
        return reportUsageError(translated("unknown option"));
    }
    return openLink(argument, activationToken);
}

} // namespace

int main(int argc, char** argv) {
    printLibraryMessagesOnOneLine();
    std::setlocale(LC_ALL, ""); // some applications need dates in the user's format
    chooseLanguage(programFolders().catalogs, std::nullopt);
    try {
        return run(argc, argv, takeOwnActivationToken());
    } catch (const std::exception& error) {
        return reportError(error.what(), EXIT_FAILURE);
    }
}
