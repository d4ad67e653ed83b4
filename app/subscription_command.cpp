#include "app/subscription_command.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

#include "app/input_line.h"
#include "app/messages.h"
#include "app/password_prompt.h"
#include "app/preferences_choice.h"
#include "base/ascii_text.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/calendars/subscriptions/copied_sources.h"
#include "freedesktop/glib/child_program.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/plain_text/terminal_line.h"
#include "freedesktop/preferences/calendar_selection.h"
#include "freedesktop/subscribed_calendars.h"
#include "shells/headless/color_text.h"

namespace quorvel::app {

using freedesktop::CalendarSelection;
using freedesktop::ChildProgram;
using freedesktop::CopyState;
using freedesktop::ProgramCall;
using freedesktop::RemoteCalendar;
using freedesktop::Subscription;
using freedesktop::SubscriptionCache;
using freedesktop::SubscriptionOptions;
using freedesktop::translated;

namespace {

constexpr double longestRun = 120; // seconds; the program bounds its time itself
using Subscriptions = std::vector<Subscription>;

SubscriptionOptions subscriptionOptions(const std::string& folder) {
    return {freedesktop::userSubscriptionFolder(), folder, freedesktop::programFolders().refresh};
}

// The program's exit status; absent if it could not be run, which has been reported.
std::optional<int> run(const ProgramCall& call) {
    std::optional<int> status;
    const auto child = ChildProgram::start(call, [&status](int ended) { status = ended; });
    if (!child) {
        printError({filled(translated("the program '{1}' cannot be started ({2})"),
                           {call.arguments.front(), child.error().what}),
                    {},
                    translated("install the program again")});
        return std::nullopt;
    }
    (*child)->wait(longestRun);
    return status;
}

// Titles come from servers, too.
CommandResult<void> printLine(const std::string& text) {
    const Result<void> printed = print(freedesktop::terminalLine(text) + '\n');
    return printed ? CommandResult<void>() : operationFailure(printed.error());
}

// As the user knows the calendar.
std::string labelOf(const Subscription& subscription, const SubscriptionCache& cache) {
    return sourceOf(subscription, cache).copy->label;
}

// Passwords.

CommandResult<std::string> passwordOf(const CommandLine& line, const Subscription& subscription) {
    const Result<std::string> password =
        line.readsPassword ? readPassword()
                           : askForPassword(filled(translated("Password of {1} at {2}: "),
                                                   {*line.user, subscription.host}));
    return password ? CommandResult<std::string>(*password) : operationFailure(password.error());
}

bool runPasswordProgram(const char* task, const std::string& input) {
    ProgramCall call;
    call.arguments = {freedesktop::programFolders().refresh, task};
    call.input = input;
    return run(call) == 0;
}

CommandResult<void> storePassword(const CommandLine& line, const Subscription& subscription) {
    const CommandResult<std::string> password = passwordOf(line, subscription);
    if (!password) {
        return password.error();
    }
    const std::string input = subscription.url + '\n' + *line.user + '\n' + *password + '\n';
    return runPasswordProgram("--store-password", input)
               ? CommandResult<void>()
               : operationFailure({translated("the password could not be stored"), {}, {}});
}

CommandResult<void> forgetPassword(const Subscription& subscription) {
    return runPasswordProgram("--forget-password", subscription.url + '\n')
               ? CommandResult<void>()
               : operationFailure({translated("the password could not be removed"),
                                   {},
                                   translated("remove it with the desktop's password manager")});
}

// The choice of calendars.

// A list of chosen calendars would hide a calendar that the user has just asked for.
CommandResult<void> changeSelection(const std::string& folder, const Subscription& subscription,
                                    bool isSubscribed) {
    Result<CalendarSelection> selection = freedesktop::readCalendarSelection(folder);
    if (!selection) {
        return operationFailure(selection.error());
    }
    const std::string identifier = calendarIdentifierOf(subscription);
    const bool isChosen =
        std::ranges::find(selection->identifiers, identifier) != selection->identifiers.end();
    if (isSubscribed == isChosen || (isSubscribed && selection->followsDesktop)) {
        return {};
    }
    if (isSubscribed) {
        selection->identifiers.push_back(identifier);
    } else {
        std::erase(selection->identifiers, identifier);
    }
    const Result<void> written = freedesktop::writeCalendarSelection(folder, *selection);
    return written ? CommandResult<void>() : operationFailure(written.error());
}

// Subscribing.

class Subscribing {
public:
    Subscribing(const CommandLine& line, std::string folder, Subscription subscription,
                bool wasSubscribed)
        : m_line(line)
        , m_folder(std::move(folder))
        , m_options(subscriptionOptions(m_folder))
        , m_cache(m_options.cacheFolder)
        , m_subscription(std::move(subscription))
        , m_wasSubscribed(wasSubscribed) {}

    CommandResult<void> run() {
        if (m_line.user) {
            if (const auto stored = storePassword(m_line, m_subscription); !stored) {
                return stored;
            }
            m_subscription.hasPassword = true;
        }
        app::run(refreshCall(m_options, {m_subscription.url}));
        const CopyState state = m_cache.readState(m_subscription.url);
        const bool isFetched = state.error.empty() && m_cache.hasCopy(m_subscription.url);
        if (!isFetched && !state.mayPass && !m_wasSubscribed) {
            return refuse(state);
        }
        return store(state, isFetched);
    }

private:
    CommandResult<void> refuse(const CopyState& state) {
        m_cache.remove(m_subscription.url);
        if (m_line.user) {
            static_cast<void>(forgetPassword(m_subscription)); // it reports a failure itself
        }
        const std::string reason =
            state.error.empty() ? translated("it could not be fetched") : translated(state.error);
        return operationFailure({filled(translated("the calendar at {1} was not added ({2})"),
                                        {m_subscription.host, reason}),
                                 {},
                                 translated(state.toDo)});
    }

    CommandResult<void> store(const CopyState& state, bool isFetched) {
        const Result<void> stored = freedesktop::storeSubscription(m_folder, m_subscription);
        if (!stored) {
            return operationFailure(stored.error());
        }
        if (const auto changed = changeSelection(m_folder, m_subscription, true); !changed) {
            return changed;
        }
        const std::string label = labelOf(m_subscription, m_cache);
        if (!isFetched) {
            printError(
                {translated(state.error), label,
                 state.mayPass ? translated("it will be fetched later") : translated(state.toDo)});
        }
        return printLine(filled(translated("Subscribed to '{1}'."), {label}));
    }

    const CommandLine& m_line;
    std::string m_folder;
    SubscriptionOptions m_options;
    SubscriptionCache m_cache;
    Subscription m_subscription;
    bool m_wasSubscribed;
};

CommandResult<Subscriptions> subscriptionsIn(const std::string& folder) {
    auto list = freedesktop::readSubscriptions(folder);
    return list ? CommandResult<Subscriptions>(*std::move(list)) : operationFailure(list.error());
}

// An address may be a secret, and everybody can read the arguments of a process.
std::string addressOf(const CommandLine& line) {
    constexpr std::string_view standardInput = "-";
    constexpr std::size_t longestAddress = 16384; // bytes; longer ones are cut, and refused then
    return *line.subscribe == standardInput ? readInputLine(STDIN_FILENO, longestAddress).text
                                            : *line.subscribe;
}

// In the form that the list of subscriptions has; absent: the user has named none.
CommandResult<std::optional<std::string>> colourOf(const CommandLine& line) {
    constexpr std::size_t opaqueLength = 7; // "#RRGGBB"
    if (!line.colour) {
        return std::optional<std::string>();
    }
    const auto colour = headless::parseColor(*line.colour);
    const std::string text = colour ? headless::colorText(*colour) : "";
    if (!text.ends_with("FF")) {
        return usageFailure({filled(translated("'{1}' is no colour"), {*line.colour}),
                             {},
                             translated("write #RRGGBB or a common name")});
    }
    return std::optional(text.substr(0, opaqueLength));
}

CommandResult<void> subscribe(const CommandLine& line, const std::string& folder) {
    const CommandResult<std::optional<std::string>> colour = colourOf(line);
    if (!colour) {
        return colour.error();
    }
    const Result<RemoteCalendar> calendar = freedesktop::parseRemoteCalendar(addressOf(line));
    if (!calendar) {
        return usageFailure(calendar.error());
    }
    const CommandResult<Subscriptions> list = subscriptionsIn(folder);
    if (!list) {
        return list.error();
    }
    const auto known = std::ranges::find(*list, calendar->url, &Subscription::url);
    const bool wasSubscribed = known != list->end();
    Subscription subscription{calendar->url, calendar->host, line.title, *colour, false};
    if (wasSubscribed && !line.title) {
        subscription.title = known->title;
    }
    return Subscribing(line, folder, std::move(subscription), wasSubscribed).run();
}

// Unsubscribing.

Subscriptions matches(const std::string& name, const Subscriptions& list,
                      const SubscriptionCache& cache) {
    const auto calendar = freedesktop::parseRemoteCalendar(name);
    Subscriptions found;
    for (const Subscription& subscription : list) {
        const std::string label = asciiLowerCase(labelOf(subscription, cache));
        const bool isMeant = calendar
                                 ? subscription.url == calendar->url
                                 : label == asciiLowerCase(name) || subscription.host == name ||
                                       calendarIdentifierOf(subscription) == name;
        if (isMeant) {
            found.push_back(subscription);
        }
    }
    return found;
}

// An address is not repeated, as it may be a secret.
Failure unknownSubscription(const std::string& name) {
    const bool isAddress = freedesktop::parseRemoteCalendar(name).hasValue();
    return usageFailure({isAddress ? translated("there is no subscription to this address")
                                   : filled(translated("there is no subscription '{1}'"), {name}),
                         {},
                         translated("'quorvel settings calendars' lists the calendars")});
}

CommandResult<void> unsubscribe(const CommandLine& line, const std::string& folder) {
    const CommandResult<Subscriptions> list = subscriptionsIn(folder);
    if (!list) {
        return list.error();
    }
    const SubscriptionCache cache(freedesktop::userSubscriptionFolder());
    const Subscriptions found = matches(*line.unsubscribe, *list, cache);
    if (found.empty()) {
        return unknownSubscription(*line.unsubscribe);
    }
    if (found.size() > 1) {
        return usageFailure(
            {filled(translated("several subscriptions have the title '{1}'"), {*line.unsubscribe}),
             {},
             translated("give the address")});
    }
    const Subscription& subscription = found.front();
    const std::string label = labelOf(subscription, cache);
    if (const auto removed = freedesktop::removeSubscription(folder, subscription.url); !removed) {
        return operationFailure(removed.error());
    }
    cache.remove(subscription.url);
    if (const auto changed = changeSelection(folder, subscription, false); !changed) {
        return changed;
    }
    if (subscription.hasPassword) {
        if (const auto forgotten = forgetPassword(subscription); !forgotten) {
            return forgotten;
        }
    }
    return printLine(filled(translated("Unsubscribed from '{1}'."), {label}));
}

} // namespace

bool isAboutSubscriptions(const CommandLine& line) {
    return line.subscribe || line.unsubscribe;
}

CommandResult<void> runSubscriptionCommand(const CommandLine& line) {
    const std::string folder = preferencesFolderOf(line);
    return line.subscribe ? subscribe(line, folder) : unsubscribe(line, folder);
}

} // namespace quorvel::app
