#include "freedesktop/calendars/thunderbird/calendar_registry.h"

#include <algorithm>
#include <map>
#include <optional>

#include "freedesktop/calendars/thunderbird/preferences_script.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::string_view prefix = "calendar.";
constexpr std::string_view registryPrefix = "calendar.registry.";
constexpr std::size_t mostCalendars = 500;

using Preferences = std::map<std::string, std::string>;

// The properties of one calendar, by their names.
struct Entry {
    std::string id;
    Preferences properties;

    std::string valueOf(const std::string& name) const {
        const auto found = properties.find(name);
        return found != properties.end() ? found->second : std::string();
    }
    bool isTrue(const std::string& name) const { return valueOf(name) == "true"; }
};

// An identifier has no dots; the names of some properties have.
std::vector<Entry> entriesIn(const Preferences& preferences) {
    std::vector<Entry> entries;
    for (const auto& [key, value] : preferences) {
        if (!key.starts_with(registryPrefix)) {
            continue;
        }
        const std::string rest = key.substr(registryPrefix.size());
        const std::string id = rest.substr(0, rest.find('.'));
        if (id.size() == rest.size() || id.empty()) {
            continue;
        }
        if (entries.empty() || entries.back().id != id) { // the keys are sorted
            if (entries.size() == mostCalendars) {
                break;
            }
            entries.push_back({id, {}});
        }
        entries.back().properties[rest.substr(id.size() + 1)] = value;
    }
    return entries;
}

// The position of the calendar in the list, which is a text of identifiers with spaces between.
std::size_t positionIn(const std::string& order, const std::string& id) {
    std::size_t start = 0;
    while ((start = order.find(id, start)) != std::string::npos) {
        const std::size_t end = start + id.size();
        if ((start == 0 || order[start - 1] == ' ') && (end == order.size() || order[end] == ' ')) {
            return start;
        }
        start = end;
    }
    return order.size();
}

// An untick removes the property, so that its absence means something only where another calendar
// has it.
bool knowsTicks(const std::vector<Entry>& entries) {
    return std::ranges::any_of(
        entries, [](const Entry& entry) { return entry.isTrue("calendar-main-in-composite"); });
}

} // namespace

std::vector<RegisteredCalendar> registeredCalendars(std::string_view preferencesScript) {
    const Preferences preferences = preferencesIn(preferencesScript, prefix);
    std::vector<Entry> entries = entriesIn(preferences);
    const auto order = preferences.find("calendar.list.sortOrder");
    if (order != preferences.end()) {
        std::ranges::stable_sort(
            entries, {}, [&](const Entry& entry) { return positionIn(order->second, entry.id); });
    }
    const bool areTicksKnown = knowsTicks(entries);
    std::vector<RegisteredCalendar> calendars;
    for (const Entry& entry : entries) {
        const std::string type = entry.valueOf("type");
        if (type.empty() || type == "memory" || entry.isTrue("disabled")) {
            continue;
        }
        calendars.push_back({entry.id, entry.valueOf("name"), entry.valueOf("color"),
                             type == "storage",
                             !areTicksKnown || entry.isTrue("calendar-main-in-composite"),
                             entry.valueOf("cache.enabled") != "false"});
    }
    return calendars;
}

} // namespace quorvel::freedesktop::thunderbird
