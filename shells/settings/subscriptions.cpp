#include "shells/settings/subscriptions.h"

#include <algorithm>
#include <utility>

#include "freedesktop/calendars/subscriptions/copied_sources.h"

namespace quorvel::settings_pages {

using freedesktop::Subscription;
using freedesktop::SubscriptionCache;

namespace {

std::vector<std::string> calendarsCommand(const std::string& program,
                                          const std::string& preferencesFolder,
                                          const std::string& option, const std::string& value) {
    return {program, "settings", "calendars", "--preferences", preferencesFolder, option, value};
}

} // namespace

std::vector<ListedSubscription> readSubscriptionList(const std::string& preferencesFolder) {
    std::vector<ListedSubscription> subscriptions;
    const SubscriptionCache cache(freedesktop::userSubscriptionFolder());
    if (const auto list = freedesktop::readSubscriptions(preferencesFolder)) {
        for (const Subscription& subscription : *list) {
            subscriptions.push_back({calendarIdentifierOf(subscription),
                                     sourceOf(subscription, cache).copy->label, subscription.host});
        }
    }
    return subscriptions;
}

std::vector<ListedCalendar>
withSubscriptions(std::vector<ListedCalendar> calendars,
                  const std::vector<ListedSubscription>& subscriptions) {
    for (const ListedSubscription& subscription : subscriptions) {
        const auto found =
            std::ranges::find(calendars, subscription.identifier, &ListedCalendar::identifier);
        if (found != calendars.end()) {
            found->subscription = SubscriptionState::fetched;
        } else {
            calendars.push_back({subscription.identifier,
                                 subscription.title,
                                 {},
                                 subscription.host,
                                 true, // as soon as it is there
                                 SubscriptionState::neverFetched});
        }
    }
    return calendars;
}

std::vector<std::string> subscribeCommand(const std::string& program,
                                          const std::string& preferencesFolder) {
    return calendarsCommand(program, preferencesFolder, "--subscribe", "-");
}

std::vector<std::string> unsubscribeCommand(const std::string& program,
                                            const std::string& preferencesFolder,
                                            const std::string& identifier) {
    return calendarsCommand(program, preferencesFolder, "--unsubscribe", identifier);
}

} // namespace quorvel::settings_pages
