#include "freedesktop/calendars/server/library/event_query.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>
#include <utility>

namespace quorvel::freedesktop::eds {

namespace {

// Of the range on either side: dates and floating times are within a day of what they mean.
constexpr std::int64_t marginSeconds = std::int64_t{2} * 24 * 3600;
// The server finds nothing before and behind these by time.
constexpr std::int64_t firstSecond = 0;
constexpr std::int64_t lastSecond = 2'145'916'800; // the year 2038

std::string timeText(std::int64_t seconds) {
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> time(
        g_date_time_new_from_unix_utc(seconds), g_date_time_unref);
    const TextHandle text(g_date_time_format(time.get(), "%Y%m%dT%H%M%SZ"));
    return text.get();
}

// The library searches the system's files for a zone of that name.
bool mayBeAskedFor(std::string_view zone) {
    constexpr std::size_t longestName = 200;
    return !zone.empty() && zone.size() <= longestName &&
           zone.find("..") == std::string_view::npos && zone.find('\n') == std::string_view::npos;
}

bool isNameOfPlace(std::string_view zone) {
    return std::all_of(zone.begin(), zone.end(), [](char letter) {
        return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '/' ||
               letter == '_' || letter == '-' || letter == '+';
    });
}

// By its name alone everybody knows what is meant.
bool isCommonZone(const std::string& zone) {
    return i_cal_timezone_get_builtin_timezone_from_tzid(zone.c_str()) != nullptr ||
           (isNameOfPlace(zone) && i_cal_timezone_get_builtin_timezone(zone.c_str()) != nullptr);
}

std::string zoneText(ECalClient& client, const std::string& name, GCancellable& cancellable) {
    if (!mayBeAskedFor(name) || isCommonZone(name)) {
        return {};
    }
    ICalTimezone* zone = nullptr; // the client's
    GError* error = nullptr;
    e_cal_client_get_timezone_sync(&client, name.c_str(), &zone, &cancellable, &error);
    const ErrorHandle held(error);
    if (error != nullptr || zone == nullptr) {
        return {};
    }
    const ObjectHandle<ICalComponent> component(i_cal_timezone_get_component(zone));
    const TextHandle text(component ? i_cal_component_as_ical_string(component.get()) : nullptr);
    return text ? text.get() : "";
}

void noteZone(ICalParameter* parameter, gpointer names) {
    if (const char* const name = i_cal_parameter_get_tzid(parameter)) {
        static_cast<std::set<std::string>*>(names)->insert(name);
    }
}

// The error is absent where all went well.
ErrorHandle addEvents(ECalClient& client, const std::string& query, std::string& text,
                      std::set<std::string>& zoneNames, GCancellable& cancellable) {
    GSList* list = nullptr;
    GError* error = nullptr;
    e_cal_client_get_object_list_sync(&client, query.c_str(), &list, &cancellable, &error);
    const ObjectListHandle<GSList> components(list);
    for (GSList* entry = list; entry != nullptr; entry = entry->next) {
        auto* const component = I_CAL_COMPONENT(entry->data);
        i_cal_component_foreach_tzid(component, noteZone, &zoneNames);
        if (const TextHandle event{i_cal_component_as_ical_string(component)}) {
            text += event.get();
        }
    }
    return ErrorHandle(error);
}

} // namespace

std::string singleEventsQuery(SearchedRange range) {
    const std::string isSingle = "(not (has-recurrences?))";
    const std::int64_t from = range.from - marginSeconds;
    const std::int64_t to = range.to + marginSeconds;
    if (from <= firstSecond || to >= lastSecond) {
        return isSingle;
    }
    return "(and " + isSingle + " (occur-in-time-range? (make-time \"" + timeText(from) +
           "\") (make-time \"" + timeText(to) + "\")))";
}

FetchedEvents fetchEvents(ECalClient& client, SearchedRange range, ZoneTexts& zones,
                          GCancellable& cancellable) {
    std::string events;
    std::set<std::string> zoneNames;
    for (const std::string& query : {std::string(repeatingEventsQuery), singleEventsQuery(range)}) {
        if (ErrorHandle error = addEvents(client, query, events, zoneNames, cancellable)) {
            return {{}, std::move(error)};
        }
    }
    FetchedEvents fetched{"BEGIN:VCALENDAR\r\nVERSION:2.0\r\n", nullptr};
    for (const std::string& name : zoneNames) {
        auto known = zones.find(name);
        if (known == zones.end()) {
            known = zones.emplace(name, zoneText(client, name, cancellable)).first;
        }
        fetched.text += known->second;
    }
    fetched.text += events;
    fetched.text += "END:VCALENDAR\r\n";
    return fetched;
}

} // namespace quorvel::freedesktop::eds
