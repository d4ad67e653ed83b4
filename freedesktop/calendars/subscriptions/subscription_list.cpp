#include "freedesktop/calendars/subscriptions/subscription_list.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <utility>
#include <variant>

#include <sys/stat.h>

#include "freedesktop/calendars/subscriptions/calendar_address.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/property_list_change.h"
#include "freedesktop/preferences/property_list_edit.h"
#include "freedesktop/preferences/property_list_file.h"
#include "freedesktop/preferences/reported_property_list.h"

namespace quorvel::freedesktop {

using platform::objectForKey;
using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

namespace {

constexpr const char* urlKey = "url";
constexpr const char* titleKey = "title";
constexpr const char* colourKey = "color";
constexpr const char* passwordKey = "hasPassword";

std::string pathIn(const std::string& preferencesFolder) {
    return preferencesFolder + '/' + std::string(subscriptionListName);
}

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
    Result<RemoteCalendar> calendar = parseRemoteCalendar(textAt(*entry, urlKey).value_or(""));
    if (!calendar) {
        return std::nullopt;
    }
    const PropertyListValue* const hasPassword = objectForKey(*entry, passwordKey);
    return Subscription{std::move(calendar->url), std::move(calendar->host),
                        textAt(*entry, titleKey), textAt(*entry, colourKey),
                        hasPassword != nullptr && platform::boolValue(*hasPassword)};
}

bool isAbout(const PropertyListValue& value, const std::string& url) {
    const auto subscription = subscriptionOf(value);
    return subscription && subscription->url == url;
}

void describe(PropertyListDictionary& entry, const Subscription& subscription) {
    if (subscription.title) {
        entry.insert_or_assign(titleKey, PropertyListValue{*subscription.title});
    }
    if (subscription.colour) {
        entry.insert_or_assign(colourKey, PropertyListValue{*subscription.colour});
    }
    if (subscription.hasPassword) {
        entry.insert_or_assign(passwordKey, PropertyListValue{true});
    }
}

// While it exists, new files and folders are for the user alone.
class PrivateFiles {
public:
    PrivateFiles()
        : m_before(::umask(077)) {}
    ~PrivateFiles() { ::umask(m_before); }
    PrivateFiles(const PrivateFiles&) = delete;
    PrivateFiles& operator=(const PrivateFiles&) = delete;

private:
    mode_t m_before;
};

using Change = std::function<PropertyListArray(PropertyListArray)>;

Result<std::optional<std::string>> changed(const std::optional<std::vector<std::byte>>& bytes,
                                           const std::string& path, const Change& change) {
    const auto before = bytes ? parseArray(*bytes, path) : PropertyListArray();
    if (!before) {
        return before.error();
    }
    const PropertyListArray after = change(*before);
    if (areSame({*before}, {after})) {
        return std::optional<std::string>();
    }
    Result<std::string> text = bytes ? changedArray(*bytes, *before, after) : newArray(after);
    return text ? Result<std::optional<std::string>>(std::optional(*std::move(text)))
                : text.error();
}

Result<void> changeList(const std::string& preferencesFolder, const Change& change) {
    const PrivateFiles guard;
    const std::string path = pathIn(preferencesFolder);
    return changePropertyListFile(path,
                                  [&](const auto& bytes) { return changed(bytes, path, change); });
}

} // namespace

Result<std::vector<Subscription>> readSubscriptions(const std::string& preferencesFolder) {
    const std::string path = pathIn(preferencesFolder);
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
        return Error{translated("it is not a list of subscriptions"), path, {}};
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

Result<void> storeSubscription(const std::string& preferencesFolder,
                               const Subscription& subscription) {
    return changeList(preferencesFolder, [&](PropertyListArray list) {
        auto entry = std::ranges::find_if(
            list, [&](const auto& value) { return isAbout(value, subscription.url); });
        if (entry == list.end()) {
            list.push_back({PropertyListDictionary{{urlKey, {subscription.url}}}});
            entry = std::prev(list.end());
        }
        describe(std::get<PropertyListDictionary>(entry->value), subscription);
        return list;
    });
}

Result<void> removeSubscription(const std::string& preferencesFolder, const std::string& url) {
    return changeList(preferencesFolder, [&](PropertyListArray list) {
        std::erase_if(list, [&](const auto& value) { return isAbout(value, url); });
        return list;
    });
}

} // namespace quorvel::freedesktop
