#include "app/copy_refresh.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/messages.h"
#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/calendars/subscriptions/copy_status.h"
#include "freedesktop/glib/child_program.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/subscribed_calendars.h"

namespace quorvel::app {

using freedesktop::CalendarSource;
using freedesktop::ChildProgram;
using freedesktop::FreedesktopOptions;
using freedesktop::ProgramCall;
using freedesktop::SubscribedCalendars;
using freedesktop::SubscriptionCache;
using freedesktop::translated;

namespace {

// The program bounds its time itself, four calendars at a time.
constexpr double longestRefresh = 600; // seconds

std::vector<CalendarSource> copiesOf(const FreedesktopOptions& options) {
    std::vector<CalendarSource> copies =
        SubscribedCalendars(options.subscriptions).withSubscriptions(options.calendars);
    std::erase_if(copies, [](const CalendarSource& source) { return !source.copy; });
    return copies;
}

std::vector<std::string> urlsToRefresh(const CommandLine& line,
                                       const std::vector<CalendarSource>& copies,
                                       const SubscriptionCache& cache) {
    if (!line.refreshes) {
        return dueCopies(copies, cache, freedesktop::systemSeconds());
    }
    std::vector<std::string> urls;
    urls.reserve(copies.size());
    for (const CalendarSource& copy : copies) {
        urls.push_back(copy.copy->origin);
    }
    return urls;
}

bool isMissing(const CalendarSource& source, const SubscriptionCache& cache) {
    return source.copy && !cache.hasCopy(source.copy->origin);
}

// True: it has ended.
bool run(ProgramCall call, std::optional<double> longestWait) {
    call.showsErrors = !longestWait; // else they would arrive when the command has ended
    const std::string program = call.arguments.front();
    const auto child = ChildProgram::start(call, nullptr);
    if (!child) {
        printError({filled(translated("the program '{1}' cannot be started ({2})"),
                           {program, child.error().what}),
                    {},
                    translated("install the program again")});
        return true;
    }
    return (*child)->wait(longestWait.value_or(longestRefresh));
}

CommandResult<void> checkNamed(const FreedesktopOptions& options, const SubscriptionCache& cache) {
    for (const CalendarSource& source : options.calendars) {
        if (isMissing(source, cache)) {
            const auto state = cache.readState(source.copy->origin);
            const std::string reason = state.error.empty() ? translated("it could not be fetched")
                                                           : translated(state.error);
            return operationFailure({filled(translated("the calendar at {1} cannot be read: {2}"),
                                            {source.copy->host, reason}),
                                     {},
                                     translated(state.toDo)});
        }
    }
    return {};
}

} // namespace

CommandResult<void> refreshCopies(const CommandLine& line, const FreedesktopOptions& options) {
    const SubscriptionCache cache(options.subscriptions.cacheFolder);
    const std::vector<std::string> urls = urlsToRefresh(line, copiesOf(options), cache);
    if (!urls.empty()) {
        const bool mustEnd =
            line.refreshes || std::ranges::any_of(options.calendars, [&](auto& source) {
                return isMissing(source, cache);
            });
        run(refreshCall(options.subscriptions, urls),
            mustEnd ? std::nullopt : std::optional(options.dataServerWaits.first));
    }
    return checkNamed(options, cache);
}

CommandResult<void> checkRefreshed(const FreedesktopOptions& options) {
    const SubscriptionCache cache(options.subscriptions.cacheFolder);
    const auto failed =
        freedesktop::copyProblems(copiesOf(options), cache, freedesktop::systemSeconds()).size();
    if (failed == 0) {
        return {};
    }
    return operationFailure(
        {filled(freedesktop::translatedPlural("{1} calendar could not be refreshed",
                                              "{1} calendars could not be refreshed", failed),
                {std::to_string(failed)}),
         {},
         {}});
}

} // namespace quorvel::app
