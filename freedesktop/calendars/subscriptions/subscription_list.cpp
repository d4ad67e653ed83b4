#include "freedesktop/calendars/subscriptions/subscription_list.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {

using platform::objectForKey;
using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

namespace {

// Absent or empty texts are none.
std::optional<std::string> textAt(const PropertyListDictionary& entry, std::string_view key) {
    const PropertyListValue* const value = objectForKey(entry, key);
    const auto* const text = value != nullptr ? std::get_if<std::string>(&value->value) : nullptr;
    return text != nullptr && !text->empty() ? std::optional(*text) : std::nullopt;
}

std::optional<Subscription> subscriptionOf(const PropertyListValue& value) {
    const auto* const entry = std::get_if<PropertyListDictionary>(&value.value);
    if (entry == nullptr) {
        return std::nullopt;
    }
    Result<RemoteCalendar> calendar = parseRemoteCalendar(textAt(*entry, "url").value_or(""));
    if (!calendar) {
        return std::nullopt;
    }
    return Subscription{std::move(calendar->url), std::move(calendar->host),
                        textAt(*entry, "title"), textAt(*entry, "color")};
}

} // namespace

Result<std::vector<Subscription>> readSubscriptions(const std::string& preferencesFolder) {
    const std::string path = preferencesFolder + '/' + std::string(subscriptionListName);
    const auto list = readPropertyListFile(path);
    if (!list) {
        return Error{list.error().what, path, {}};
    }
    std::vector<Subscription> subscriptions;
    if (!*list) {
        return subscriptions;
    }
    const auto* const entries = std::get_if<PropertyListArray>(&(*list)->value);
    if (entries == nullptr) {
        return Error{"it is not a list of subscriptions", path, {}};
    }
    for (const PropertyListValue& value : *entries) {
        std::optional<Subscription> subscription = subscriptionOf(value);
        if (subscription && std::ranges::find(subscriptions, subscription->url,
                                              &Subscription::url) == subscriptions.end()) {
            subscriptions.push_back(*std::move(subscription));
        }
    }
    return subscriptions;
}

} // namespace quorvel::freedesktop
