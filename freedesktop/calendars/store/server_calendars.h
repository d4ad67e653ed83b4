// The server's calendars and questions in the words of the platform.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/calendars/server/data_server.h"
#include "platform/calendar_store.h"
#include "platform/ui_color.h"

namespace quorvel::freedesktop::eds {

// Fit for an identifier of the platform's, and different for different ones.
std::string calendarIdentifier(std::string_view serverIdentifier);

// As calendar files write it, or with four digits a channel; absent where it is neither.
std::optional<platform::UIColor> serverColour(std::string_view text);

std::shared_ptr<const platform::EKCalendar> makeCalendar(const ServerCalendar& calendar);

// Absent where nothing can be found in it. The end is rounded up, and cut after the years in which
// a search ends.
std::optional<SearchedRange> searchedRange(const platform::EKEventPredicate& predicate);

} // namespace quorvel::freedesktop::eds
