#include "shells/headless/calendar_list.h"

#include <algorithm>
#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/headless/color_text.h"
#include "shells/headless/json.h"
#include "shells/headless/terminal_text.h"
#include "shells/headless/widget_session.h"

namespace quorvel::headless {

using freedesktop::translated;
using platform::EKCalendar;

namespace {

bool wasSearched(const EKCalendar& calendar, const std::optional<RecordedQuery>& query) {
    return query && std::ranges::any_of(query->predicate.calendars, [&](const auto& searched) {
               return searched && searched->calendarIdentifier == calendar.calendarIdentifier;
           });
}

} // namespace

std::vector<ListedCalendar> readCalendars(WidgetSession& session) {
    session.loadWithRows();
    const std::optional<RecordedQuery> query = session.latestQuery();
    std::vector<ListedCalendar> calendars;
    for (const auto& calendar : session.platform().calendarStores.makeEventStore()->calendars()) {
        calendars.push_back({calendar, wasSearched(*calendar, query)});
    }
    return calendars;
}

std::string calendarsText(const std::vector<ListedCalendar>& calendars,
                          const std::function<std::string(std::string_view)>& storeOf) {
    if (calendars.empty()) {
        return std::string(translated("No calendars.")) + '\n';
    }
    std::vector<std::vector<std::string>> rows{{translated("IDENTIFIER"), translated("TITLE"),
                                                translated("COLOR"), translated("SELECTED"),
                                                translated("STORE")}};
    for (const ListedCalendar& listed : calendars) {
        const EKCalendar& calendar = *listed.calendar;
        rows.push_back({calendar.calendarIdentifier, calendar.title,
                        calendar.CGColor ? colorText(*calendar.CGColor) : "-",
                        listed.isSelected ? translated("yes") : translated("no"),
                        translated(storeOf(calendar.calendarIdentifier))});
    }
    return textInColumns(rows);
}

std::string calendarsDocument(const std::vector<ListedCalendar>& calendars,
                              const std::function<std::string(std::string_view)>& storeOf) {
    Json document = Json::array();
    for (const ListedCalendar& listed : calendars) {
        Json& json = document.emplace_back(Json::object());
        json["identifier"] = listed.calendar->calendarIdentifier;
        json["title"] = listed.calendar->title;
        json["color"] = colorJson(listed.calendar->CGColor);
        json["selected"] = listed.isSelected;
        if (storeOf) {
            json["store"] = storeOf(listed.calendar->calendarIdentifier);
        }
    }
    return documentText(document);
}

} // namespace quorvel::headless
