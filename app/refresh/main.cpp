// The program that reads calendars from servers and stores their copies: the only one that speaks
// to a network.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "app/refresh/refresh_input.h"
#include "app/refresh/refresh_workers.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/log/library_messages.h"
#include "freedesktop/network/credentials.h"
#include "freedesktop/plain_text/terminal_line.h"

namespace {

using namespace quorvel;
using namespace quorvel::app;
using freedesktop::parseRemoteCalendar;
using freedesktop::RemoteCalendar;

constexpr int exitUsage = 2;

int reportError(const Error& error, int status) {
    std::fprintf(stderr, "quorvel: %s\n", freedesktop::terminalLine(message(error)).c_str());
    return status;
}

int refresh(const std::vector<std::string>& lines, const RefreshOptions& options) {
    std::vector<std::string> urls;
    for (const std::string& line : lines) {
        const Result<RemoteCalendar> calendar = parseRemoteCalendar(line);
        if (!calendar) {
            return reportError(calendar.error(), exitUsage);
        }
        urls.push_back(calendar->url);
    }
    return refreshCalendars(urls, options) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int storePassword(const std::vector<std::string>& lines) {
    if (lines.size() != 3) {
        return reportError(
            {freedesktop::translated("an address, a name and a password are needed"), {}, {}},
            exitUsage);
    }
    const Result<RemoteCalendar> calendar = parseRemoteCalendar(lines[0]);
    if (!calendar) {
        return reportError(calendar.error(), exitUsage);
    }
    const Result<void> stored =
        freedesktop::network::storeCredentials(calendar->url, calendar->host, {lines[1], lines[2]});
    return stored ? EXIT_SUCCESS : reportError(stored.error(), EXIT_FAILURE);
}

int forgetPasswords(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        const Result<void> removed = freedesktop::network::removeCredentials(line);
        if (!removed) {
            return reportError(removed.error(), EXIT_FAILURE);
        }
    }
    return EXIT_SUCCESS;
}

int run(const RefreshInput& input) {
    if (input.task == RefreshTask::help) {
        std::fputs(refreshHelp().c_str(), stdout);
        return EXIT_SUCCESS;
    }
    if (input.task == RefreshTask::version) {
        std::puts("quorvel-refresh " QUORVEL_VERSION);
        return EXIT_SUCCESS;
    }
    const auto lines = readInputLines();
    if (!lines) {
        return reportError(lines.error(), EXIT_FAILURE);
    }
    switch (input.task) {
    case RefreshTask::storePassword:
        return storePassword(*lines);
    case RefreshTask::forgetPassword:
        return forgetPasswords(*lines);
    default:
        return refresh(*lines, input.options);
    }
}

} // namespace

int main(int argc, char** argv) {
    ::umask(077); // what it writes concerns the user alone
    freedesktop::printLibraryMessagesOnOneLine();
    freedesktop::chooseLanguage(freedesktop::programFolders().catalogs, std::nullopt);
    try {
        const auto input = parseRefreshArguments({argv + 1, argv + argc});
        return input ? run(*input) : reportError(input.error(), exitUsage);
    } catch (const std::exception& error) {
        return reportError({error.what(), {}, {}}, EXIT_FAILURE);
    }
}
