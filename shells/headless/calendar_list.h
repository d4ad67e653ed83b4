// The calendars in the store's order, as text and as JSON.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/calendar_store.h"

namespace quorvel::headless {

class WidgetSession;

struct ListedCalendar {
    std::shared_ptr<const platform::EKCalendar> calendar; // never null
    bool isSelected = false;                              // whether the widget searches it
};

// Loads the widget to find out which calendars it searches.
std::vector<ListedCalendar> readCalendars(WidgetSession& session);

// `storeOf` returns where the calendar with an identifier is, such as a path.
std::string calendarsText(const std::vector<ListedCalendar>& calendars,
                          const std::function<std::string(std::string_view)>& storeOf);
// A JSON array of {"identifier", "title", "color", "selected"}, and "store" where `storeOf` is not
// null.
std::string
calendarsDocument(const std::vector<ListedCalendar>& calendars,
                  const std::function<std::string(std::string_view)>& storeOf = nullptr);

} // namespace quorvel::headless
