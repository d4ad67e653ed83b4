#include "shells/settings/calendar_choice.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::CalendarSelection;
using freedesktop::translated;
using nlohmann::json;

namespace {

std::string textMember(const json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

bool flagMember(const json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_boolean() && member->get<bool>();
}

bool contains(const std::vector<std::string>& identifiers, const std::string& identifier) {
    return std::ranges::find(identifiers, identifier) != identifiers.end();
}

} // namespace

Result<std::vector<ListedCalendar>> parseCalendarList(std::string_view document) {
    const json list = json::parse(document, nullptr, false);
    if (!list.is_array()) {
        return Error{translated(text::calendarsUnreadable), {}, {}};
    }
    std::vector<ListedCalendar> calendars;
    for (const json& entry : list) {
        if (!entry.is_object() || textMember(entry, "identifier").empty()) {
            return Error{translated(text::calendarsUnreadable), {}, {}};
        }
        calendars.push_back({textMember(entry, "identifier"), textMember(entry, "title"),
                             textMember(entry, "color"), textMember(entry, "store"),
                             flagMember(entry, "selected"), SubscriptionState::none});
    }
    return calendars;
}

CalendarSelection withCalendar(CalendarSelection selection, const std::string& identifier,
                               bool isShown) {
    std::erase(selection.identifiers, identifier);
    if (isShown) {
        selection.identifiers.push_back(identifier);
    }
    return selection;
}

CalendarSelection withOwnList(CalendarSelection selection,
                              const std::vector<ListedCalendar>& calendars) {
    selection.followsDesktop = false;
    const bool namesOne = std::ranges::any_of(calendars, [&](const ListedCalendar& calendar) {
        return contains(selection.identifiers, calendar.identifier);
    });
    for (const ListedCalendar& calendar : calendars) {
        if (!namesOne && calendar.isShown) {
            selection.identifiers.push_back(calendar.identifier);
        }
    }
    return selection;
}

} // namespace quorvel::settings_pages
